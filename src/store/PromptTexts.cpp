// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/PromptTexts.h"

#include "store/FileLocation.h"

#include <QFileInfo>

#include <array>
#include <span>

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

namespace {

struct PasteButton {
    const char* title;
    PasteImageChoice choice;
};

std::span<const PasteButton> pasteButtons(PasteTarget target) {
    static constexpr std::array<PasteButton, 2> withoutProject{{
        {"Open as new project", PasteImageChoice::openAsNewProject},
        {"Cancel", PasteImageChoice::cancel},
    }};
    static constexpr std::array<PasteButton, 4> onSmallerCanvas{{
        {"Open as new project", PasteImageChoice::openAsNewProject},
        {"Expand canvas", PasteImageChoice::expandCanvas},
        {"Keep canvas size", PasteImageChoice::keepCanvasSize},
        {"Cancel", PasteImageChoice::cancel},
    }};
    if (target == PasteTarget::noProject) return withoutProject;
    return onSmallerCanvas;
}

QString pasteText(QSizeF imageSize, PasteTarget target) {
    if (target == PasteTarget::smallerCanvas)
        return QStringLiteral(
            "The image being pasted is larger than the current canvas. What do "
            "you want to do with it?");
    return QStringLiteral("Choose how to place the %1 x %2 image from the clipboard.")
        .arg(qRound64(imageSize.width()))
        .arg(qRound64(imageSize.height()));
}

} // namespace

PromptText pastePrompt(QSizeF imageSize, PasteTarget target) {
    PromptText prompt{QStringLiteral("Paste Image"), pasteText(imageSize, target), {}};
    for (const PasteButton& button : pasteButtons(target))
        prompt.buttons.append(QString::fromLatin1(button.title));
    return prompt;
}

PasteImageChoice pasteChoice(int button, PasteTarget target) {
    const auto buttons = pasteButtons(target);
    if (button < 0 || button >= static_cast<int>(buttons.size())) return PasteImageChoice::cancel;
    return buttons[static_cast<std::size_t>(button)].choice;
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
