// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/GenerativeFillDialog.h"

#include "platform/HttpClient.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SlimBar.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"
#include "store/ProjectStore.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <chrono>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;

constexpr QSize dialogSize{520, 384};
constexpr auto barStep = 33ms;

bool isReturn(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

QLabel* note(const QString& text, QWidget* parent) {
    QLabel* label = Labels::muted(text, parent);
    label->setWordWrap(true);
    return label;
}

} // namespace

GenerativeFillDialog::GenerativeFillDialog(store::ProjectStore& store, QWidget* parent)
    : QDialog(parent), m_store(store) {
    setWindowTitle(tr("Generative Fill"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, Style::grid);
    column->addWidget(note(tr("Replace selected pixels using your OpenAI API key. "
                              "Results may vary."),
                           this));

    m_prompt = new QPlainTextEdit(this);
    m_prompt->setAccessibleName(tr("Prompt"));
    m_prompt->setTabChangesFocus(true);
    m_prompt->installEventFilter(this);
    QLabel* promptLabel = Labels::body(tr("Prompt"), this);
    promptLabel->setBuddy(m_prompt);
    column->addSpacing(Style::grid / 2);
    column->addWidget(promptLabel);
    column->addWidget(m_prompt, 1);
    column->addSpacing(Style::grid / 2);

    m_model = new QComboBox(this);
    m_model->setAccessibleName(tr("Image model"));
    for (const auto model : effects::allGenerativeFillImageModels())
        m_model->addItem(title(model), static_cast<int>(model));
    QLabel* modelLabel = Labels::body(tr("Image model"), this);
    modelLabel->setBuddy(m_model);
    auto* modelRow = new QHBoxLayout;
    modelRow->addWidget(modelLabel);
    modelRow->addWidget(m_model);
    modelRow->addStretch();
    column->addLayout(modelRow);

    m_context = new QCheckBox(tr("Provide canvas context"), this);
    m_context->setChecked(true);
    const QString contextNote =
        tr("Sends a flattened full-canvas image so the model can complete nearby content.");
    m_context->setAccessibleDescription(contextNote);
    column->addSpacing(Style::grid / 2);
    column->addWidget(m_context);
    column->addWidget(note(contextNote, this));

    const QString working = tr("Generating and applying pixels...");
    m_failure = Labels::failure({}, this);
    m_failure->setWordWrap(true);
    m_working = Labels::body(working, this);
    m_bar = new SlimBar(this);
    m_bar->setAccessibleName(working);
    column->addWidget(m_failure);
    column->addWidget(m_working);
    column->addWidget(m_bar);
    column->addSpacing(Style::grid);
    DialogParts::addButtons(*this, tr("Generate"));
    m_accept = findChild<QPushButton*>(QStringLiteral("accept"));

    connect(&m_barTimer, &QTimer::timeout, m_bar, [this] { m_bar->showFraction(m_fraction); });
    showState({});
    m_prompt->setFocus();
}

GenerativeFillDialog::~GenerativeFillDialog() {
    giveUp();
}

effects::GenerativeFillRequest GenerativeFillDialog::request() const {
    return {m_prompt->toPlainText(),
            static_cast<effects::GenerativeFillImageModel>(m_model->currentData().toInt()),
            m_context->isChecked()};
}

void GenerativeFillDialog::accept() {
    if (!isGenerating()) generate();
}

void GenerativeFillDialog::reject() {
    giveUp();
    QDialog::reject();
}

bool GenerativeFillDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (isReturn(key) && !(key.modifiers() & Qt::ShiftModifier)) {
            accept();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void GenerativeFillDialog::generate() {
    m_fraction = -1.0;
    m_fill = m_store.performGenerativeFill(
        request(), [this](const std::optional<QString>& failure) { finish(failure); },
        [this](const platform::HttpProgress& progress) {
            m_fraction = progress.expected > 0
                             ? double(progress.received) / double(progress.expected)
                             : -1.0;
        });
    showState({});
}

void GenerativeFillDialog::finish(const std::optional<QString>& failure) {
    m_fill.reset();
    if (!failure) return QDialog::accept();
    showState(*failure);
    m_prompt->setFocus();
}

void GenerativeFillDialog::giveUp() {
    if (m_fill) m_store.cancelGenerativeFill(*m_fill);
    m_fill.reset();
}

void GenerativeFillDialog::showState(const QString& failure) {
    m_failure->setText(failure);
    m_failure->setVisible(!failure.isEmpty());
    m_working->setVisible(isGenerating());
    m_bar->setVisible(isGenerating());
    if (isGenerating())
        m_barTimer.start(barStep);
    else
        m_barTimer.stop();
    for (QWidget* control : {static_cast<QWidget*>(m_prompt), static_cast<QWidget*>(m_model),
                             static_cast<QWidget*>(m_context), static_cast<QWidget*>(m_accept)})
        control->setEnabled(!isGenerating());
}

} // namespace quillabrae::shell
