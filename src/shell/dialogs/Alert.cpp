// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/Alert.h"

#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/HeldDialog.h"
#include "shell/looks/Style.h"
#include "store/PromptTexts.h"

#include <QCoreApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr int textWidth = 380;

QHBoxLayout* makeButtons(const QStringList& titles, QDialog& dialog) {
    auto* row = new QHBoxLayout;
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

QDialog* makeDialog(const Alert& alert, QWidget* parent) {
    auto* dialog = new QDialog(parent);
    dialog->setWindowTitle(QStringLiteral("Quillabrae"));
    dialog->setAccessibleName(alert.message);
    dialog->setAccessibleDescription(alert.informativeText);
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(3 * Style::grid, 20, 3 * Style::grid, 2 * Style::grid);
    layout->setSpacing(Style::grid);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    QLabel* message = Labels::title(alert.message, 1.1, dialog);
    QLabel* text = Labels::muted(alert.informativeText, dialog);
    for (QLabel* label : {message, text}) {
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    // One width for both: the height of the one is reckoned at the width of the wider.
    TextSize::follow(*dialog, [dialog, message, text] {
        for (QLabel* label : {message, text})
            label->setFixedWidth(TextSize::scaled(textWidth, *dialog));
    });
    layout->addSpacing(Style::grid);
    layout->addLayout(makeButtons(alert.buttons, *dialog));
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
