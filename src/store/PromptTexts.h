// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/SaveFormat.h"
#include "store/StoreEnvironment.h"

#include <QSizeF>
#include <QString>
#include <QStringList>

namespace quillabrae::store {

/// What a question to the user says. The buttons stand in their order, the default one first.
struct PromptText {
    QString message;
    QString informativeText;
    QStringList buttons;
};

PromptText saveBeforeClosingPrompt(const QString& projectTitle);
PromptText flattenedSavePrompt(int layerCount);
PromptText overwritePrompt(const QString& fileName);
PromptText pastePrompt(QSizeF imageSize, PasteTarget target);
/// What a button of that prompt stands for; `cancel` for an index that is none of its buttons'.
PasteImageChoice pasteChoice(int button, PasteTarget target);

QString openProjectPanelTitle();
QString importImagePanelTitle();
QString savePanelTitle();

/// Where a project goes for what was chosen in the save panel: the format decides the extension,
/// whatever was typed.
persistence::SaveDestination saveDestination(const QUrl& chosen, persistence::SaveFormat format);

} // namespace quillabrae::store
