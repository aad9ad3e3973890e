// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/EveryDialog.h"

#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/ColorRemovalDialog.h"
#include "shell/dialogs/GenerativeFillDialog.h"
#include "shell/dialogs/LayerPropertiesDialog.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/dialogs/RotateZoomDialog.h"
#include "shell/dialogs/SVGSizeDialogView.h"

namespace quillabrae::shell {

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
}

} // namespace quillabrae::shell
