// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/PromptTexts.h"

#include "store/FileLocation.h"

#include <QFileInfo>

namespace quillabrae::store {

PromptText saveBeforeClosingPrompt(const QString& projectTitle) {
    return {QStringLiteral("Save changes to \"%1\" before closing?").arg(projectTitle),
            QStringLiteral("If you don't save, changes to this project will be lost."),
            {QStringLiteral("Save"), QStringLiteral("Don't Save"), QStringLiteral("Cancel")}};
}

PromptText flattenedSavePrompt(int layerCount) {
    return {QStringLiteral("Flatten layers before saving?"),
            QStringLiteral("This project has %1 layers. Saving as an image will flatten visible "
                           "layers into a single image file. Your editable project stays "
                           "unchanged.")
                .arg(layerCount),
            {QStringLiteral("Save Flattened Image"), QStringLiteral("Cancel")}};
}

PromptText overwritePrompt(const QString& fileName) {
    return {QStringLiteral("A file named \"%1\" already exists.").arg(fileName),
            QStringLiteral("Do you want to replace it? The existing file will be overwritten."),
            {QStringLiteral("Replace"), QStringLiteral("Cancel")}};
}

QString openProjectPanelTitle() {
    return QStringLiteral("Open Quillabrae Project or Image");
}

QString importImagePanelTitle() {
    return QStringLiteral("Import Layer From File");
}

QString savePanelTitle() {
    return QStringLiteral("Save Quillabrae");
}

persistence::SaveDestination saveDestination(const QUrl& chosen, persistence::SaveFormat format) {
    const QFileInfo file(fileLocation(chosen).toLocalFile());
    const QString name =
        file.completeBaseName().isEmpty() ? file.fileName() : file.completeBaseName();
    return {
        QUrl::fromLocalFile(
            QStringLiteral("%1/%2.%3").arg(file.path(), name, persistence::fileExtension(format))),
        format};
}

} // namespace quillabrae::store
