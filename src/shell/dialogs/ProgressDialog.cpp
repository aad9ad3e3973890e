// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/ProgressDialog.h"

#include "shell/controls/Labels.h"
#include "shell/controls/SlimBar.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;

constexpr int contentWidth = 340;
constexpr auto lookEvery = 33ms;

} // namespace

ProgressDialog::ProgressDialog(const QString& title, platform::WorkControl& control,
                               QWidget* parent)
    : QDialog(parent), m_control(control) {
    setWindowTitle(QStringLiteral("Quillabrae"));
    setWindowModality(Qt::ApplicationModal);
    setAccessibleName(title);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(3 * Style::grid, 20, 3 * Style::grid, 2 * Style::grid);
    layout->setSpacing(12);

    QLabel* label = Labels::body(title, this);
    label->setWordWrap(true);
    TextSize::setFixedWidth(*label, contentWidth);
    m_bar = new SlimBar(this);
    m_bar->setAccessibleName(title);
    m_cancel = new QPushButton(tr("Cancel"), this);
    connect(m_cancel, &QPushButton::clicked, this, &ProgressDialog::reject);
    layout->addWidget(label);
    layout->addWidget(m_bar);
    layout->addWidget(m_cancel, 0, Qt::AlignRight);

    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &ProgressDialog::showFraction);
    timer->start(lookEvery);
    showFraction();
    TextSize::fixSize(*this, {});
}

void ProgressDialog::reject() {
    m_control.cancel();
    m_cancel->setEnabled(false);
    m_cancel->setText(tr("Cancelling…"));
}

void ProgressDialog::showFraction() {
    m_bar->showFraction(m_control.fraction());
}

} // namespace quillabrae::shell
