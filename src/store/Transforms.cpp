// SPDX-License-Identifier: GPL-3.0-or-later
// What changes the canvas as a whole, and the selected layer as a whole.
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/Attempt.h"
#include "store/LayerRewriting.h"
#include "store/ProjectStore.h"
#include "store/SelectionState.h"

#include <algorithm>
#include <utility>

namespace quillabrae::store {

namespace LayerRasterService = raster::LayerRasterService;
using raster::RasterImage;

namespace {

QSizeF atLeastOne(double width, double height) {
    return {std::max(width, 1.0), std::max(height, 1.0)};
}

/// The part of the added room that lies before the old pixels: none, half or all of it.
double shareBefore(int place) {
    return static_cast<double>(place) / 2.0;
}

/// Where the old canvas's top left comes to lie in the new one. Halves stay halves.
QPointF offsetOf(model::CanvasAnchor anchor, QSizeF room) {
    // The anchors stand in reading order, three in a row.
    const int place = static_cast<int>(anchor);
    return {room.width() * shareBefore(place % 3), room.height() * shareBefore(place / 3)};
}

} // namespace

model::PaintProject* ProjectStore::rewriteCanvas(const CanvasRewrite& rewrite,
                                                 const model::PaintProject& before,
                                                 model::PaintProject rewritten) {
    const RewriteOutcome outcome = rewriteLayers(rewritten, rewrite, m_environment.work);
    const auto index = indexOf(before.id);
    if (outcome == RewriteOutcome::failed) {
        setStatusMessage(tr("%1 failed: the image would be too large").arg(rewrite.name),
                         StatusKind::failure);
        return nullptr;
    }
    if (outcome == RewriteOutcome::cancelled || !index || m_openProjects[*index] != before) {
        setStatusMessage(tr("%1 cancelled").arg(rewrite.name));
        return nullptr;
    }
    rewritten.canvasWidth = rewrite.size.width();
    rewritten.canvasHeight = rewrite.size.height();
    rewritten.resolutionDPI = rewrite.resolutionDPI;
    clearSelection(rewritten);
    m_openProjects[*index] = std::move(rewritten);
    return &m_openProjects[*index];
}

void ProjectStore::resizeActiveImage(const ResizeDialogResult& result) {
    return Attempt::run(*this, tr("Resize"), [&]() {
        if (!hasActiveProject()) return;
        const model::PaintProject before = *activeProject();
        const QSizeF size = atLeastOne(result.width, result.height);
        model::PaintProject* project = rewriteCanvas(
            {tr("Resize"), tr("Resizing image"), size, result.resolutionDPI,
             [size](const RasterImage& picture) {
                 return LayerRasterService::resizedCopy(picture, size.width(), size.height());
             }},
            before, before);
        if (!project) return;
        m_lastRepeatableAction = RepeatableActions::ResizeImage{result};
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Resize"), QStringLiteral("arrow.up.left.and.arrow.down.right"));
        setStatusMessage(tr("Resized image to %1").arg(sizeText(size)));
    });
}

void ProjectStore::resizeActiveCanvas(const ResizeDialogResult& result) {
    return Attempt::run(*this, tr("Canvas size"), [&]() {
        if (!hasActiveProject()) return;
        const model::PaintProject before = *activeProject();
        const QSizeF former = atLeastOne(before.canvasWidth, before.canvasHeight);
        const QSizeF size = atLeastOne(result.width, result.height);
        const QRectF target(offsetOf(result.anchor, size - former), former);
        model::PaintProject* project = rewriteCanvas(
            {tr("Canvas size"), tr("Changing canvas size"), size, result.resolutionDPI,
             [size, target](const RasterImage& picture) {
                 return LayerRasterService::transformedImage(picture, size.width(), size.height(),
                                                             target);
             }},
            before, before);
        if (!project) return;
        m_lastRepeatableAction = RepeatableActions::ResizeCanvas{result};
        const QUuid id = finishEdit(*project);
        editSettings([&](model::PaintAppSettings& settings) {
            settings.lastCanvasResizeAnchor = result.anchor;
        });
        recordHistory(id, tr("Canvas Size"), QStringLiteral("rectangle.expand.vertical"));
        setStatusMessage(tr("Changed canvas to %1").arg(sizeText(size)));
    });
}

void ProjectStore::invertActiveImage() {
    return Attempt::run(*this, tr("Invert"), [&]() {
        model::PaintProject* project = projectToEdit();
        if (!project || !project->selectedLayer()) return;
        if (project->selectedLayer()->isLocked)
            return setStatusMessage(tr("Selected layer is locked"));
        const auto selection = activeSelection(*project);
        const bool putDown = putDownFloatingSelection(*project);
        if (!LayerRasterService::invertColors(*project->selectedLayer(), project->canvasWidth,
                                              project->canvasHeight, selection)) {
            if (putDown) finishEdit(*project);
            return setStatusMessage(tr("Nothing to invert"));
        }
        m_lastRepeatableAction = RepeatableActions::InvertImage{};
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Invert"), QStringLiteral("circle.lefthalf.filled"));
        setStatusMessage(selection ? tr("Inverted selected area") : tr("Inverted selected layer"));
    });
}

void ProjectStore::flipSelectedLayer(FlipDirection direction) {
    return Attempt::run(*this, tr("Flip"), [&]() {
        model::PaintProject* project = projectToEdit();
        model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
        if (!layer || layer->isLocked) return;
        const bool isHorizontal = direction == FlipDirection::horizontal;
        if (!LayerRasterService::flipLayerPixels(
                *layer, project->canvasWidth, project->canvasHeight, activeSelection(*project),
                isHorizontal ? raster::MirrorAxis::horizontal : raster::MirrorAxis::vertical))
            return;
        m_lastRepeatableAction = RepeatableActions::FlipLayer{direction};
        const QUuid id = finishEdit(*project);
        const QString title = isHorizontal ? tr("Flip Horizontal") : tr("Flip Vertical");
        recordHistory(
            id, title,
            isHorizontal
                ? QStringLiteral("arrow.left.and.right.righttriangle.left.righttriangle.right")
                : QStringLiteral("arrow.up.and.down.righttriangle.up.righttriangle.down"));
        setStatusMessage(tr("%1 applied").arg(title));
    });
}

void ProjectStore::rotateZoomSelectedLayer(const RotateZoomDialogResult& result) {
    return Attempt::run(*this, tr("Rotate / Zoom"), [&]() {
        model::PaintProject* project = projectToEdit();
        model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
        if (!layer || layer->isLocked) return;
        if (!LayerRasterService::rotateZoomLayerPixels(
                *layer, project->canvasWidth, project->canvasHeight, activeSelection(*project),
                result.angleDegrees, result.zoomPercentage))
            return;
        m_lastRepeatableAction = RepeatableActions::RotateZoom{result};
        const QUuid id = finishEdit(*project);
        setStatusMessage(tr("Rotate / Zoom applied"));
        recordHistory(id, tr("Rotate / Zoom"), QStringLiteral("rotate.3d"));
    });
}

} // namespace quillabrae::store
