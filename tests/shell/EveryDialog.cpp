// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/EveryDialog.h"

#include "platform/WorkRunner.h"
#include "services/FeedbackAttachmentService.h"
#include "services/FeedbackService.h"
#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/ColorRemovalDialog.h"
#include "shell/dialogs/FeedbackDialogView.h"
#include "shell/dialogs/GenerativeFillDialog.h"
#include "shell/dialogs/LayerPropertiesDialog.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "shell/dialogs/ProgressDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/dialogs/RotateZoomDialog.h"
#include "shell/dialogs/SVGSizeDialogView.h"
#include "shell/plugins/PluginLibraryView.h"
#include "store/PromptTexts.h"
#include "support/ScriptedHttpClient.h"

namespace quillabrae::shell {
namespace {

using Visit = std::function<void(QWidget& dialog, const QString& name)>;

void visitFeedback(QWidget* host, const Visit& visit) {
    tests::ScriptedHttpClient http;
    const services::FeedbackService service(http, services::WebService({}), {});
    services::FeedbackAttachmentService attachments({});
    FeedbackDialogView feedback({service, attachments, [](QWidget*) { return std::nullopt; }},
                                host);
    visit(feedback, QStringLiteral("feedback"));
}

} // namespace

void visitDialogs(store::ProjectStore& store, QWidget* host,
                  const std::function<void(QWidget& dialog, const QString& name)>& visit) {
    NewProjectDialog project({900, 620}, host);
    visit(project, QStringLiteral("new project"));
    NewProjectDialog tooLarge({90'000, 62'000}, host);
    visit(tooLarge, QStringLiteral("new project, too large"));
    for (const auto mode : {ResizeDialogMode::image, ResizeDialogMode::canvas}) {
        ResizeDialog resize({.mode = mode,
                             .canvasSize = {900, 620},
                             .resolutionDPI = 96,
                             .anchor = model::CanvasAnchor::center},
                            host);
        visit(resize, QStringLiteral("resize"));
    }
    AlignObjectDialog align([](store::AlignObjectAction) {}, host);
    visit(align, QStringLiteral("align"));
    ColorRemovalDialog removal(
        store.settings(), [](const store::ColorRemovalSettings&) {}, host);
    visit(removal, QStringLiteral("color removal"));
    RotateZoomDialog rotate(host);
    visit(rotate, QStringLiteral("rotate"));
    LayerPropertiesDialog layer(store::LayerPropertiesDialogResult{}, host);
    visit(layer, QStringLiteral("layer properties"));
    GenerativeFillDialog fill(store, host);
    visit(fill, QStringLiteral("generative fill"));
    SVGSizeDialogView svg({900, 620}, host);
    visit(svg, QStringLiteral("import svg"));
    visitFeedback(host, visit);
    platform::WorkControl control;
    ProgressDialog progress(QStringLiteral("Saving a project of a name that is not short"), control,
                            host);
    visit(progress, QStringLiteral("progress"));
}

std::vector<Alert> everyAlert() {
    const QString name = QStringLiteral("a picture of the lake");
    return {Alerts::flattenBeforeSaving(3),
            Alerts::replaceFile(name + QStringLiteral(".quillabrae")),
            Alerts::saveBeforeClosing(name),
            Alerts::pasteImage({640, 480}, store::PasteTarget::noProject),
            Alerts::pasteImage({640, 480}, store::PasteTarget::smallerCanvas),
            pluginFailureAlert(QStringLiteral("The disk is full."))};
}

} // namespace quillabrae::shell
