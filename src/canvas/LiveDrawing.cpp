// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/LiveDrawing.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/PixelCopy.h"
#include "raster/SurfaceSize.h"

#include <algorithm>
#include <utility>

namespace quillabrae::canvas {
// What is left of a torn file must not get into the next one.
std::optional<model::PngBytes> readableBitmap(const model::PaintLayer& layer) {
    const auto& png = layer.bitmapPNGData;
    return png && !raster::decodedImage(*png).isNull() ? png : std::nullopt;
}

model::PaintStroke LiveDrawing::liveStroke(std::vector<model::CanvasPoint> points) const {
    const model::PaintAppSettings& settings = m_context.host.settings();
    const model::PaintTool tool = settings.selectedTool;
    model::PaintStroke stroke;
    stroke.id = QUuid::createUuid();
    stroke.tool = tool;
    stroke.color = tool == model::PaintTool::eraser
                       ? model::ColorValue{1.0, 1.0, 1.0, 1.0}
                       : m_activeDrawingColor.value_or(settings.primaryColor);
    if (tool == model::PaintTool::gradient) stroke.secondaryColor = settings.secondaryColor;
    stroke.lineWidth = settings.brushSize;
    if (model::usesHardnessControl(tool)) stroke.hardness = settings.pencilHardness;
    stroke.points = std::move(points);
    if (tool == model::PaintTool::shapes) {
        stroke.secondaryColor =
            m_button == DrawingButton::right ? settings.primaryColor : settings.secondaryColor;
        stroke.lineWidth = settings.shapeOutlineWidth;
        stroke.shape = settings.selectedShape;
        stroke.shapeDrawingMode = settings.shapeDrawingMode;
    }
    return stroke;
}

void LiveDrawing::begin(const model::PaintLayer& layer) {
    const model::PaintProject* project = m_context.host.project();
    m_activeDrawingLayerID = layer.id;
    m_layerBitmapPNGData = layer.bitmapPNGData;
    m_originalBitmapPNGData = readableBitmap(layer);
    m_encodedDrawing.reset();
    m_drawnRect = {};
    // Shares the decoded pixels; they are copied when the first segment is drawn.
    m_drawingBaseImage =
        raster::LayerRasterService::renderLayer(layer, project->canvasWidth, project->canvasHeight);
    m_liveDrawingImage = m_drawingBaseImage;
}

bool LiveDrawing::isStale() const {
    if (!m_activeDrawingLayerID) return false;
    const model::PaintProject* project = m_context.host.project();
    if (project == nullptr) return true;
    const auto layer =
        std::ranges::find(project->layers, *m_activeDrawingLayerID, &model::PaintLayer::id);
    return layer == project->layers.end() || layer->bitmapPNGData != m_layerBitmapPNGData ||
           raster::surfaceSize(project->canvasWidth, project->canvasHeight) !=
               QSize(m_drawingBaseImage.width(), m_drawingBaseImage.height());
}

QRect LiveDrawing::drawOnLiveImage(const model::PaintStroke& stroke) {
    const model::PaintProject* project = m_context.host.project();
    if (m_liveDrawingImage.sharesPixelsWith(m_drawingBaseImage))
        m_liveDrawingImage = m_versions.drawable(m_drawingBaseImage);
    return raster::LayerRasterService::drawStroke(stroke, m_liveDrawingImage, project->canvasWidth,
                                                  project->canvasHeight);
}

void LiveDrawing::drawLiveStroke(std::vector<model::CanvasPoint> points) {
    if (m_context.host.project() == nullptr || m_liveDrawingImage.isNull()) return;
    didDraw(drawOnLiveImage(liveStroke(std::move(points))));
}

void LiveDrawing::restoreBase() {
    if (m_drawnRect.isEmpty() || m_liveDrawingImage.isNull()) return;
    raster::copyPixels(m_drawingBaseImage, m_liveDrawingImage, m_drawnRect);
    ++m_liveDrawingRevision;
    m_context.repaintCanvasPixels(std::exchange(m_drawnRect, {}));
}

void LiveDrawing::showInstead(const model::PaintLayer& drawn) {
    const model::PaintProject* project = m_context.host.project();
    m_liveDrawingImage =
        raster::LayerRasterService::renderLayer(drawn, project->canvasWidth, project->canvasHeight);
    m_encodedDrawing = drawn.bitmapPNGData;
    didDraw(QRect(0, 0, m_liveDrawingImage.width(), m_liveDrawingImage.height()));
}

void LiveDrawing::forgetLiveImage() {
    m_liveDrawingImage = {};
    ++m_liveDrawingRevision;
}

void LiveDrawing::didDraw(const QRect& drawn) {
    m_drawnRect |= drawn;
    ++m_liveDrawingRevision;
    m_didRasterizeDrawing = true;
    dropSelection();
    m_context.repaintCanvasPixels(drawn);
}

void LiveDrawing::dropSelection() {
    const model::PaintProject* project = m_context.host.project();
    // A write refreshes every observer of the project: only where there is something to drop.
    if (!project->isCanvasSelected && !project->pixelSelection) return;
    m_context.editProject([](model::PaintProject& edited) {
        edited.isCanvasSelected = false;
        edited.pixelSelection.reset();
    });
}

void LiveDrawing::finishRasterDrawing(model::PaintTool tool) {
    const model::PaintProject* project = m_context.host.project();
    if (!m_didRasterizeDrawing || m_liveDrawingImage.isNull() || project == nullptr ||
        !m_activeDrawingLayerID) {
        return resetRasterDrawing();
    }
    const auto layer =
        std::ranges::find(project->layers, *m_activeDrawingLayerID, &model::PaintLayer::id);
    if (layer == project->layers.end() || !layer->isVisible || layer->isLocked)
        return resetRasterDrawing();

    write(static_cast<std::size_t>(layer - project->layers.begin()));
    m_context.host.recordHistory(model::title(tool), model::symbolName(tool));
    resetRasterDrawing();
}

void LiveDrawing::keepAsDraft() {
    m_activeDrawingColor.reset();
    m_didRasterizeDrawing = false;
}

void LiveDrawing::drawInstead(const model::PaintStroke& stroke) {
    if (m_context.host.project() == nullptr || m_liveDrawingImage.isNull()) return;
    restoreBase();
    m_drawnRect = drawOnLiveImage(stroke);
    ++m_liveDrawingRevision;
    m_context.repaintCanvasPixels(m_drawnRect);
}

void LiveDrawing::writeDraft(const QString& historyTitle, const QString& historySymbolName) {
    const model::PaintProject* project = m_context.host.project();
    if (m_liveDrawingImage.isNull() || project == nullptr || !m_activeDrawingLayerID) return;
    const auto layer =
        std::ranges::find(project->layers, *m_activeDrawingLayerID, &model::PaintLayer::id);
    if (layer == project->layers.end() || !layer->isVisible || layer->isLocked) return;
    write(static_cast<std::size_t>(layer - project->layers.begin()));
    m_context.host.recordHistory(historyTitle, historySymbolName);
}

void LiveDrawing::write(std::size_t layerIndex) {
    const model::PngBytes png = encodedDrawing();
    m_context.editProject([&](model::PaintProject& edited) {
        edited.layers[layerIndex].bitmapPNGData = png;
        edited.lastModified = m_context.host.now();
    });
    if (!m_encodedDrawing) m_versions.add(m_drawingBaseImage, m_liveDrawingImage, m_drawnRect);
    // What shows is what was stored: nothing is painted again.
    m_drawnRect = {};
}

/// Costs what was drawn on, where the layer had pixels of the canvas's size before, and nothing
/// where the drawing came encoded.
model::PngBytes LiveDrawing::encodedDrawing() const {
    if (m_encodedDrawing) return *m_encodedDrawing;
    if (!m_originalBitmapPNGData) return raster::encodedImage(m_liveDrawingImage);
    const raster::RowRange drawnRows{m_drawnRect.top(), m_drawnRect.top() + m_drawnRect.height()};
    return raster::encodedImage(m_liveDrawingImage, *m_originalBitmapPNGData, drawnRows);
}

void LiveDrawing::resetRasterDrawing() {
    m_activeDrawingLayerID.reset();
    m_drawingBaseImage = {};
    m_liveDrawingImage = {};
    m_activeDrawingColor.reset();
    m_layerBitmapPNGData.reset();
    m_originalBitmapPNGData.reset();
    m_encodedDrawing.reset();
    m_didRasterizeDrawing = false;
    ++m_liveDrawingRevision;
    m_context.repaintCanvasPixels(std::exchange(m_drawnRect, {}));
}

} // namespace quillabrae::canvas
