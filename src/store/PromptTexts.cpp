// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/PromptTexts.h"

#include "store/FileLocation.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <array>
#include <span>

namespace quillabrae::store {
namespace {

/// The context of this file's texts, for translators.
struct PromptTexts {
    Q_DECLARE_TR_FUNCTIONS(PromptTexts)
};

} // namespace

PromptText saveBeforeClosingPrompt(const QString& projectTitle) {
    return {PromptTexts::tr("Save changes to \"%1\" before closing?").arg(projectTitle),
            PromptTexts::tr("If you don't save, changes to this project will be lost."),
            {PromptTexts::tr("Save"), PromptTexts::tr("Don't Save"), PromptTexts::tr("Cancel")}};
}

PromptText flattenedSavePrompt(int layerCount) {
    return {PromptTexts::tr("Flatten layers before saving?"),
            PromptTexts::tr("This project has %n layers. Saving as an image will flatten visible "
                            "layers into a single image file. Your editable project stays "
                            "unchanged.",
                            nullptr, layerCount),
            {PromptTexts::tr("Save Flattened Image"), PromptTexts::tr("Cancel")}};
}

PromptText overwritePrompt(const QString& fileName) {
    return {PromptTexts::tr("A file named \"%1\" already exists.").arg(fileName),
            PromptTexts::tr("Do you want to replace it? The existing file will be overwritten."),
            {PromptTexts::tr("Replace"), PromptTexts::tr("Cancel")}};
}

namespace {

struct PasteButton {
    const char* title;
    PasteImageChoice choice;
};

std::span<const PasteButton> pasteButtons(PasteTarget target) {
    static constexpr std::array<PasteButton, 2> withoutProject{{
        {QT_TRANSLATE_NOOP("PromptTexts", "Open as new project"),
         PasteImageChoice::openAsNewProject},
        {QT_TRANSLATE_NOOP("PromptTexts", "Cancel"), PasteImageChoice::cancel},
    }};
    static constexpr std::array<PasteButton, 4> onSmallerCanvas{{
        {QT_TRANSLATE_NOOP("PromptTexts", "Open as new project"),
         PasteImageChoice::openAsNewProject},
        {QT_TRANSLATE_NOOP("PromptTexts", "Expand canvas"), PasteImageChoice::expandCanvas},
        {QT_TRANSLATE_NOOP("PromptTexts", "Keep canvas size"), PasteImageChoice::keepCanvasSize},
        {QT_TRANSLATE_NOOP("PromptTexts", "Cancel"), PasteImageChoice::cancel},
    }};
    if (target == PasteTarget::noProject) return withoutProject;
    return onSmallerCanvas;
}

QString pasteText(QSizeF imageSize, PasteTarget target) {
    if (target == PasteTarget::smallerCanvas)
        return PromptTexts::tr(
            "The image being pasted is larger than the current canvas. What do "
            "you want to do with it?");
    return PromptTexts::tr("Choose how to place the %1 x %2 image from the clipboard.")
        .arg(qRound64(imageSize.width()))
        .arg(qRound64(imageSize.height()));
}

} // namespace

PromptText pastePrompt(QSizeF imageSize, PasteTarget target) {
    PromptText prompt{PromptTexts::tr("Paste Image"), pasteText(imageSize, target), {}};
    for (const PasteButton& button : pasteButtons(target))
        prompt.buttons.append(QCoreApplication::translate("PromptTexts", button.title));
    return prompt;
}

PasteImageChoice pasteChoice(int button, PasteTarget target) {
    const auto buttons = pasteButtons(target);
    if (button < 0 || button >= static_cast<int>(buttons.size())) return PasteImageChoice::cancel;
    return buttons[static_cast<std::size_t>(button)].choice;
}

QString openProjectPanelTitle() {
    return PromptTexts::tr("Open Quillabrae Project or Image");
}

QString importImagePanelTitle() {
    return PromptTexts::tr("Import Layer From File");
}

QString savePanelTitle() {
    return PromptTexts::tr("Save Quillabrae");
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
