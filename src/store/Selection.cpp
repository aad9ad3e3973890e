// SPDX-License-Identifier: GPL-3.0-or-later
// What the menus do to the selection: take all, let go, copy and cut.
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/Attempt.h"
#include "store/AutosaveScope.h"
#include "store/ProjectStore.h"
#include "store/SelectionState.h"

namespace quillabrae::store {

namespace LayerRasterService = raster::LayerRasterService;
using raster::RasterImage;

namespace {

/// The floating pixels at the size at which they are shown; null without any that decode.
RasterImage floatingPixels(const model::PaintProject& project,
                           const model::PixelSelection& selection) {
    if (!project.floatingSelection) return {};
    const RasterImage pixels = raster::decodedImage(project.floatingSelection->pngData);
    if (pixels.isNull()) return {};
    return LayerRasterService::resizedCopy(pixels, selection.width, selection.height);
}

/// What a copy takes: the floating pixels, else the selected ones of the selected layer alone. Null
/// where there is nothing on the canvas.
RasterImage selectedPixels(const model::PaintProject& project,
                           const model::PixelSelection& selection) {
    RasterImage floating = floatingPixels(project, selection);
    if (!floating.isNull()) return floating;
    const model::PaintLayer* layer = project.selectedLayer();
    if (!layer) return {};
    return LayerRasterService::croppedPixels(*layer, project.canvasWidth, project.canvasHeight,
                                             selection);
}

/// Whether a cut could take something off the project. A locked layer guards its pixels, but not
/// those that float over it.
bool isCuttable(const model::PaintProject& project) {
    if (!activeSelection(project)) return false;
    if (project.floatingSelection) return true;
    const model::PaintLayer* layer = project.selectedLayer();
    return layer && !layer->isLocked;
}

bool hasSelection(const model::PaintProject& project) {
    return project.floatingSelection || project.isCanvasSelected || project.pixelSelection;
}

} // namespace

bool ProjectStore::commitFloatingSelectionIfNeeded(std::size_t projectIndex,
                                                   HistoryRecording recording) {
    return Attempt::run(*this, tr("Drop selection"), [&]() -> bool {
        if (projectIndex >= m_openProjects.size()) return false;
        model::PaintProject& project = m_openProjects[projectIndex];
        if (!putDownFloatingSelection(project)) return false;
        const QUuid id = finishEdit(project);
        if (recording == HistoryRecording::omitted) return true;
        setStatusMessage(tr("Dropped selection"));
        recordHistory(id, tr("Drop Selection"), QStringLiteral("selection.pin.in.out"));
        return true;
    });
}

void ProjectStore::selectAllCanvas() {
    return Attempt::run(*this, tr("Select all"), [&]() {
        const AutosaveScope autosave(*this);
        const auto index = activeIndex();
        if (!index) return;
        commitFloatingSelectionIfNeeded(*index, HistoryRecording::recorded);
        editActiveProject([](model::PaintProject& project) {
            project.isCanvasSelected = true;
            project.pixelSelection = model::PixelSelection{0.0, 0.0, project.canvasWidth,
                                                           project.canvasHeight, std::nullopt};
        });
        selectTool(model::PaintTool::rectangleSelect);
        setStatusMessage(tr("Selected canvas pixels"));
        if (const auto id = m_activeProjectID)
            recordHistory(*id, tr("Select All"), QStringLiteral("selection.pin.in.out"));
    });
}

void ProjectStore::dropSelection() {
    return Attempt::run(*this, tr("Drop selection"), [&]() {
        const auto index = activeIndex();
        if (!index || commitFloatingSelectionIfNeeded(*index, HistoryRecording::recorded)) return;
        model::PaintProject* project = projectToEdit();
        if (!project->isCanvasSelected) return;
        clearSelection(*project);
        const QUuid id = finishEdit(*project);
        setStatusMessage(tr("Deselected pixels"));
        recordHistory(id, tr("Deselect"), QStringLiteral("xmark.square"));
    });
}

bool ProjectStore::canDropSelection() const {
    const model::PaintProject* project = activeProject();
    return project && hasSelection(*project);
}

bool ProjectStore::copySelectedCanvasPixels() {
    return Attempt::run(*this, tr("Copy"), [&]() -> bool {
        const model::PaintProject* project = activeProject();
        const auto selection = project ? activeSelection(*project) : std::nullopt;
        if (!selection) return false;
        const RasterImage pixels = selectedPixels(*project, *selection);
        if (pixels.isNull()) return false;
        if (!m_clipboard.writePNGImage(pixels, project->displayName(),
                                       QPointF(selection->x, selection->y)))
            return false;
        setStatusMessage(tr("Copied selected pixels"));
        return true;
    });
}

bool ProjectStore::cutSelectedCanvasPixels() {
    return Attempt::run(*this, tr("Cut"), [&]() -> bool {
        if (!hasActiveProject() || !isCuttable(*activeProject())) return false;
        if (!copySelectedCanvasPixels()) return false;
        model::PaintProject* project = projectToEdit();
        if (!project) return false;
        if (project->floatingSelection)
            clearSelection(*project);
        else if (model::PaintLayer* layer = project->selectedLayer())
            LayerRasterService::clearLayerPixels(*layer, project->canvasWidth,
                                                 project->canvasHeight, *activeSelection(*project));
        const QUuid id = finishEdit(*project);
        setStatusMessage(tr("Cut selected pixels"));
        recordHistory(id, tr("Cut"), QStringLiteral("scissors"));
        return true;
    });
}

} // namespace quillabrae::store
