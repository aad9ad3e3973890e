// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/FloatingSelection.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "store/SelectionState.h"

namespace quillabrae::canvas {

void commitFloatingSelectionIfNeeded(CanvasContext& context) {
    const model::PaintProject* project = context.host.project();
    if (project == nullptr) return;
    model::PaintProject committed = *project;
    if (!store::putDownFloatingSelection(committed)) return;
    committed.lastModified = context.host.now();
    context.editProject([&](model::PaintProject& edited) { edited = committed; });
    context.repaintViewport();
}

} // namespace quillabrae::canvas
