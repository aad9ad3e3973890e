// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/Alert.h"

#include "shell/controls/BodyScroller.h"
#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/HeldDialog.h"
#include "shell/looks/Style.h"
#include "store/PromptTexts.h"

#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr int textWidth = 380;

QBoxLayout* makeButtons(const QStringList& titles, QDialog& dialog) {
    auto* row = new QBoxLayout(QBoxLayout::LeftToRight);
    row->setContentsMargins(3 * Style::grid, 0, 3 * Style::grid, 2 * Style::grid);
    row->setSpacing(Style::grid);
    row->addStretch();
    for (int index = 0; index < titles.size(); ++index) {
        auto* button = new QPushButton(titles.at(index), &dialog);
        button->setAutoDefault(true);
        button->setDefault(index == 0);
        QObject::connect(button, &QPushButton::clicked, &dialog,
                         [&dialog, index] { dialog.done(index + 1); });
        row->addWidget(button);
        if (index > 0) continue;
        Style::markPrimary(*button);
        button->setFocus();
    }
    return row;
}

/// Beside each other where there is room for that, else one under the other.
void arrange(QBoxLayout& buttons, int widest) {
    buttons.setDirection(QBoxLayout::LeftToRight);
    if (buttons.minimumSize().width() > widest) buttons.setDirection(QBoxLayout::TopToBottom);
}

ScrolledBody* makeTexts(const Alert& alert) {
    auto* texts = new ScrolledBody;
    auto* column = new QVBoxLayout(texts);
    column->setContentsMargins(3 * Style::grid, 20, 3 * Style::grid, 2 * Style::grid);
    column->setSpacing(Style::grid);
    QLabel* message = Labels::title(alert.message, 1.1, texts);
    QLabel* text = Labels::muted(alert.informativeText, texts);
    for (QLabel* label : {message, text}) {
        label->setWordWrap(true);
        column->addWidget(label);
    }
    return texts;
}

/// How wide the dialog can be on its screen, which is that of its parent until it stands somewhere.
int widestOf(const QDialog& dialog) {
    const QWidget* parent = dialog.parentWidget();
    const bool isPlaced = dialog.isVisible() || parent == nullptr;
    const QWidget& standing = isPlaced ? static_cast<const QWidget&>(dialog) : *parent->window();
    return TextSize::roomFor(standing).width();
}

/// As the letters and the screen have it.
void fit(QWidget& texts, QBoxLayout& buttons, const QDialog& dialog) {
    const int wanted = TextSize::scaled(textWidth, dialog) + 6 * Style::grid;
    const int widest = widestOf(dialog);
    texts.setMinimumWidth(std::min(wanted, widest));
    arrange(buttons, widest);
}

QDialog* makeDialog(const Alert& alert, QWidget* parent) {
    auto* dialog = new QDialog(parent);
    if (parent != nullptr) dialog->setScreen(parent->screen());
    dialog->setWindowTitle(QStringLiteral("Quillabrae"));
    dialog->setAccessibleName(alert.message);
    dialog->setAccessibleDescription(alert.informativeText);
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    ScrolledBody* texts = makeTexts(alert);
    auto* body = new BodyScroller(texts, dialog);
    body->setAccessibleName(alert.message);
    body->setAccessibleDescription(alert.informativeText);
    layout->addWidget(body, 1);
    QBoxLayout* buttons = makeButtons(alert.buttons, *dialog);
    layout->addLayout(buttons);
    TextSize::followRoom(*dialog, [dialog, texts, buttons] { fit(*texts, *buttons, *dialog); });
    TextSize::fixSize(*dialog, {});
    return dialog;
}

} // namespace

int runAlert(const Alert& alert, QWidget* parent) {
    const int answer = HeldDialog(makeDialog(alert, parent)).run();
    return answer == QDialog::Rejected ? static_cast<int>(alert.buttons.size()) - 1 : answer - 1;
}

namespace Alerts {
namespace {

Alert alertOf(const store::PromptText& text) {
    return {text.message, text.informativeText, text.buttons};
}

} // namespace

Alert flattenBeforeSaving(int layerCount) {
    return alertOf(store::flattenedSavePrompt(layerCount));
}

Alert replaceFile(const QString& fileName) {
    return alertOf(store::overwritePrompt(fileName));
}

Alert saveBeforeClosing(const QString& projectTitle) {
    return alertOf(store::saveBeforeClosingPrompt(projectTitle));
}

Alert pasteImage(QSizeF imageSize, store::PasteTarget target) {
    return alertOf(store::pastePrompt(imageSize, target));
}

} // namespace Alerts
} // namespace quillabrae::shell
