// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/MagicWandGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/FloatingSelection.h"
#include "canvas/SelectionEdit.h"
#include "raster/LayerRasterServiceRegions.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quillabrae::canvas {

void MagicWandGesture::selectMagicWandArea(model::CanvasPoint point) {
    commitFloatingSelectionIfNeeded(m_context);
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project == nullptr ? nullptr : project->selectedLayer();
    const auto selection = layer == nullptr ? std::nullopt : selectionOf(*layer, point);
    m_didCreateSelection = selection.has_value();
    if (selection) m_magicWandSeed = MagicWandSeed{layer->id, point};
    select(m_context, selection);
}

std::optional<model::PixelSelection> MagicWandGesture::selectionOf(const model::PaintLayer& layer,
                                                                   model::CanvasPoint point) const {
    const model::PaintProject& project = *m_context.host.project();
    return raster::LayerRasterService::magicWandSelection(
        layer, project.canvasWidth, project.canvasHeight, point,
        m_context.host.settings().magicWandMatchPercentage);
}

void MagicWandGesture::refreshMagicWandSelectionForMatchChange() {
    const model::PaintProject* project = m_context.host.project();
    if (!m_magicWandSeed || project == nullptr ||
        m_context.host.settings().selectedTool != model::PaintTool::magicWand)
        return;
    const auto layer =
        std::ranges::find(project->layers, m_magicWandSeed->layerID, &model::PaintLayer::id);
    if (layer == project->layers.end()) return;
    if (const auto selection = selectionOf(*layer, m_magicWandSeed->point))
        select(m_context, selection);
}

bool MagicWandGesture::finish() {
    if (!std::exchange(m_didCreateSelection, false)) return false;
    recordEdit(m_context, QCoreApplication::translate("CanvasHistory", "Select"),
               QStringLiteral("selection.pin.in.out"));
    return true;
}

} // namespace quillabrae::canvas
