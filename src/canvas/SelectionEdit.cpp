// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionEdit.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"

namespace quillabrae::canvas {

std::optional<model::PixelSelection> selectionInForce(const CanvasContext& context) {
    const model::PaintProject* project = context.host.project();
    return project == nullptr ? std::nullopt : currentSelection(*project);
}

void select(CanvasContext& context, const std::optional<model::PixelSelection>& selection) {
    const model::PaintProject* project = context.host.project();
    if (project == nullptr) return;
    // A write refreshes every observer of the project.
    if (project->isCanvasSelected == selection.has_value() && project->pixelSelection == selection)
        return;
    const bool isFloating = project->floatingSelection.has_value();
    context.editProject([&](model::PaintProject& edited) {
        edited.isCanvasSelected = selection.has_value();
        edited.pixelSelection = selection;
    });
    // Floating pixels stand where the selection does.
    if (isFloating) context.repaintViewport();
    context.repaintOverlays();
}

void recordEdit(CanvasContext& context, const QString& title, const QString& symbolName) {
    context.editProject(
        [&](model::PaintProject& edited) { edited.lastModified = context.host.now(); });
    context.host.recordHistory(title, symbolName);
}

} // namespace quillabrae::canvas
