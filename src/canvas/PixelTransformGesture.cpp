// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/PixelTransformGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/LiveDrawing.h"
#include "canvas/PointerState.h"
#include "canvas/SelectionEdit.h"
#include "canvas/ZoomController.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "raster/PixelCopy.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quillabrae::canvas {

namespace engine = raster::LayerRasterService;

namespace {

struct HistoryRow {
    const char* moveTitle;
    const char* resizeTitle;
};

constexpr HistoryRow floatingHistory{QT_TRANSLATE_NOOP("CanvasHistory", "Move Floating Pixels"),
                                     QT_TRANSLATE_NOOP("CanvasHistory", "Resize Floating Pixels")};
constexpr HistoryRow layerHistory{QT_TRANSLATE_NOOP("CanvasHistory", "Move Pixels"),
                                  QT_TRANSLATE_NOOP("CanvasHistory", "Resize Selection")};

bool floatsOn(const model::PaintProject& project, const QUuid& layerID) {
    return project.floatingSelection && project.floatingSelection->layerID == layerID;
}

} // namespace

void PixelTransformGesture::transformSelectedPixels(const DragValue& value) {
    const auto selection = selectionInForce(m_context);
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project == nullptr ? nullptr : project->selectedLayer();
    if (!selection || layer == nullptr || !layer->isVisible || layer->isLocked) return reset();
    if (!m_drag && !begin(*layer, *selection, value)) return;
    m_drag->value = value;
    if (m_activeSelectionLayerID != layer->id || m_selectionBaseImage.isNull()) return;

    const QRectF rect = m_drag->rect(m_zoom.currentZoom(), m_context.pointer.modifiers());
    // The live image takes the floating pixels' place before the selection moves under them.
    renderLiveImage(rect);
    m_shownSelection = withRect(m_drag->start, rect);
    select(m_context, m_shownSelection);
}

/// A drag from anywhere on the canvas moves the pixels; only one from off it and off every handle
/// does nothing.
bool PixelTransformGesture::begin(const model::PaintLayer& layer,
                                  const model::PixelSelection& selection, const DragValue& value) {
    const double zoom = m_zoom.currentZoom();
    auto mode = selectionDragMode(value.startLocation, selection, zoom);
    if (!mode || mode->isMove()) {
        if (!m_context.geometry().isCanvasLocation(value.startLocation, zoom)) return false;
        mode = SelectionDragMode{};
    }
    m_drag = TransformDrag{*mode, selection, value};
    m_projectAtStart = *m_context.host.project();
    m_shownSelection = selection;
    m_activeSelectionLayerID = layer.id;
    lift(layer, selection);
    return true;
}

void PixelTransformGesture::lift(const model::PaintLayer& layer,
                                 const model::PixelSelection& selection) {
    const model::PaintProject& project = *m_context.host.project();
    const double width = project.canvasWidth;
    const double height = project.canvasHeight;
    const raster::RasterImage rendered = engine::renderLayer(layer, width, height);
    m_selectionCompositeBaseImage = rendered;
    if (floatsOn(project, layer.id)) {
        m_selectionBaseImage = raster::decodedImage(project.floatingSelection->pngData);
        if (!m_selectionBaseImage.isNull()) return;
    }
    m_liftedRect = engine::pixelAlignedRect(rectOf(selection), width, height).toRect();
    if (m_liftedRect.isEmpty()) return;
    m_selectionBaseImage = engine::croppedPixels(layer, width, height, selection);
    m_selectionCompositeBaseImage = engine::clearedPixels(rendered, width, height, selection);
}

void PixelTransformGesture::renderLiveImage(const QRectF& rect) {
    const QRect canvas(0, 0, m_selectionCompositeBaseImage.width(),
                       m_selectionCompositeBaseImage.height());
    QRect changed = std::exchange(m_drawnRect, rect.toRect() & canvas);
    if (m_liveSelectionImage.isNull()) {
        m_liveSelectionImage = m_selectionCompositeBaseImage;
        changed = canvas;
    } else {
        raster::copyPixels(m_selectionCompositeBaseImage, m_liveSelectionImage, changed);
    }
    engine::drawImage(m_liveSelectionImage, m_selectionBaseImage, rect.toRect());
    ++m_liveSelectionRevision;
    m_context.repaintCanvasPixels(changed | m_drawnRect);
}

void PixelTransformGesture::refresh() {
    if (m_drag) transformSelectedPixels(DragValue(m_drag->value));
}

void PixelTransformGesture::finish() {
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = m_drag && project != nullptr ? layerUnder(*project) : nullptr;
    if (layer != nullptr && !m_liveSelectionImage.isNull()) {
        const bool isFloating = floatsOn(*project, layer->id);
        const HistoryRow& history = isFloating ? floatingHistory : layerHistory;
        if (!isFloating) land(*layer);
        const bool isMove = m_drag->mode.isMove();
        recordEdit(m_context,
                   QCoreApplication::translate("CanvasHistory",
                                               isMove ? history.moveTitle : history.resizeTitle),
                   isMove ? QStringLiteral("arrow.up.and.down.and.arrow.left.and.right")
                          : QStringLiteral("arrow.up.left.and.arrow.down.right"));
    }
    reset();
}

/// Null when the layer under edit is gone, hidden or locked meanwhile.
const model::PaintLayer* PixelTransformGesture::layerUnder(
    const model::PaintProject& project) const {
    const auto layer =
        std::ranges::find(project.layers, *m_activeSelectionLayerID, &model::PaintLayer::id);
    const bool isEditable = layer != project.layers.end() && layer->isVisible && !layer->isLocked;
    return isEditable ? &*layer : nullptr;
}

void PixelTransformGesture::land(const model::PaintLayer& layer) {
    const QRect touched = m_liftedRect | m_drawnRect;
    const raster::RowRange rows{touched.top(), touched.top() + touched.height()};
    const model::PngBytes png =
        layer.bitmapPNGData ? raster::encodedImage(m_liveSelectionImage, *layer.bitmapPNGData, rows)
                            : raster::encodedImage(m_liveSelectionImage);
    const auto index = &layer - m_context.host.project()->layers.data();
    m_context.editProject([&](model::PaintProject& edited) {
        edited.layers[static_cast<std::size_t>(index)].bitmapPNGData = png;
    });
}

void PixelTransformGesture::giveUpIfStale() {
    if (!m_drag) return;
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* now = project == nullptr ? nullptr : layerUnder(*project);
    const model::PaintLayer* then = layerUnder(*m_projectAtStart);
    const bool isSame = now != nullptr && now->bitmapPNGData == then->bitmapPNGData &&
                        project->canvasWidth == m_projectAtStart->canvasWidth &&
                        project->canvasHeight == m_projectAtStart->canvasHeight &&
                        project->floatingSelection == m_projectAtStart->floatingSelection &&
                        selectionInForce(m_context) == m_shownSelection;
    if (!isSame) reset();
}

void PixelTransformGesture::reset() {
    m_drag.reset();
    m_projectAtStart.reset();
    m_activeSelectionLayerID.reset();
    m_selectionBaseImage = {};
    m_selectionCompositeBaseImage = {};
    m_liveSelectionImage = {};
    ++m_liveSelectionRevision;
    m_context.repaintCanvasPixels(std::exchange(m_liftedRect, {}) | std::exchange(m_drawnRect, {}));
}

} // namespace quillabrae::canvas
