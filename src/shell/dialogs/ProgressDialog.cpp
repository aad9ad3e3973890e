// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/ProgressDialog.h"

#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;

constexpr int contentWidth = 340;
constexpr int barSteps = 1000;
constexpr int barHeight = 6;
constexpr auto lookEvery = 33ms;

/// A slim bar that fills up, or, without steps, with a piece of it that runs to and fro.
class SlimBar final : public QProgressBar {
public:
    explicit SlimBar(QWidget* parent) : QProgressBar(parent) { m_clock.start(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        fill(painter, 0.0, 1.0, Style::line(palette()));
        const bool hasSteps = maximum() > 0;
        const double length = hasSteps ? double(value()) / maximum() : pieceLength;
        fill(painter, hasSteps ? 0.0 : swing() * (1.0 - length), length, Style::accent(palette()));
    }

private:
    static constexpr double pieceLength = 0.25;

    /// From 0 to 1 and back, in two seconds.
    double swing() const {
        constexpr qint64 period = 2000;
        const double phase = double(m_clock.elapsed() % period) / period;
        return QEasingCurve(QEasingCurve::InOutSine)
            .valueForProgress(1.0 - std::abs(1.0 - 2.0 * phase));
    }
    void fill(QPainter& painter, double start, double length, const QColor& color) {
        const double radius = height() / 2.0;
        painter.setBrush(color);
        painter.drawRoundedRect(QRectF(start * width(), 0.0, length * width(), height()), radius,
                                radius);
    }

    QElapsedTimer m_clock;
};

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
    layout->setSizeConstraint(QLayout::SetFixedSize);

    QLabel* label = Labels::body(title, this);
    label->setWordWrap(true);
    label->setFixedWidth(contentWidth);
    m_bar = new SlimBar(this);
    m_bar->setTextVisible(false);
    m_bar->setFixedHeight(barHeight);
    m_bar->setAccessibleName(title);
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    connect(m_cancel, &QPushButton::clicked, this, &ProgressDialog::reject);
    layout->addWidget(label);
    layout->addWidget(m_bar);
    layout->addWidget(m_cancel, 0, Qt::AlignRight);

    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &ProgressDialog::showFraction);
    timer->start(lookEvery);
    showFraction();
}

void ProgressDialog::reject() {
    m_control.cancel();
    m_cancel->setEnabled(false);
    m_cancel->setText(QStringLiteral("Cancelling…"));
}

void ProgressDialog::showFraction() {
    const double fraction = m_control.fraction();
    // A bar without steps runs to and fro.
    m_bar->setRange(0, fraction < 0.0 ? 0 : barSteps);
    m_bar->setValue(static_cast<int>(std::min(fraction, 1.0) * barSteps));
    m_bar->update();
}

} // namespace quillabrae::shell
