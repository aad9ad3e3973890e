// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterServiceLayers.h"

#include "raster/LayerRasterService.h"
#include "raster/LayerRewrite.h"
#include "raster/RotateZoom.h"
#include "raster/Stretch.h"
#include "raster/SurfaceSize.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster::LayerRasterService {
namespace {

/// The coverage of a selection, or of the whole canvas without one.
std::optional<SelectionCoverage> coverageOf(const std::optional<model::PixelSelection>& selection,
                                            double canvasWidth, double canvasHeight) {
    if (selection) return SelectionCoverage::of(*selection, canvasWidth, canvasHeight);
    return SelectionCoverage::of(QRectF(0.0, 0.0, canvasWidth, canvasHeight), canvasWidth,
                                 canvasHeight);
}

/// Edits that change nothing outside the rectangle.
QRect withinRectangle(const QRect& rect) {
    return rect;
}

/// Rewrites the layer by `edit(image, coverage)`, unless nothing is covered or `edit` gives null.
/// `reach` gives what an edit of a rectangle may change.
template <typename Edit, typename Reach = decltype(&withinRectangle)>
bool rewriteCovered(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                    const std::optional<model::PixelSelection>& selection, Edit edit,
                    Reach reach = withinRectangle) {
    const auto coverage = coverageOf(selection, canvasWidth, canvasHeight);
    if (!coverage) return false;
    const LayerRewrite rewrite(layer, canvasWidth, canvasHeight);
    if (rewrite.image().isNull()) return false;
    const RasterImage edited = edit(rewrite.image(), *coverage);
    if (edited.isNull()) return false;
    rewrite.store(edited, reach(coverage->rect()));
    return true;
}

double alignedLeft(AlignHorizontalTarget target, const QRectF& block, const QRectF& bounds) {
    switch (target) {
        case AlignHorizontalTarget::keep:
            return block.left();
        case AlignHorizontalTarget::left:
            return bounds.left();
        case AlignHorizontalTarget::center:
            return std::round(bounds.center().x() - block.width() * 0.5);
        case AlignHorizontalTarget::right:
            return bounds.right() - block.width();
    }
    return block.left();
}

double alignedTop(AlignVerticalTarget target, const QRectF& block, const QRectF& bounds) {
    switch (target) {
        case AlignVerticalTarget::keep:
            return block.top();
        case AlignVerticalTarget::top:
            return bounds.top();
        case AlignVerticalTarget::middle:
            return std::round(bounds.center().y() - block.height() * 0.5);
        case AlignVerticalTarget::bottom:
            return bounds.bottom() - block.height();
    }
    return block.top();
}

} // namespace

bool invertColors(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                  const std::optional<model::PixelSelection>& selection) {
    // Without pixels there is nothing to invert, and no canvas to make for it.
    if (!layer.bitmapPNGData) return false;
    return rewriteCovered(layer, canvasWidth, canvasHeight, selection, invertedImage);
}

RasterImage croppedPixels(const model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                          const model::PixelSelection& selection) {
    const auto coverage = SelectionCoverage::of(selection, canvasWidth, canvasHeight);
    if (!coverage) return {};
    const RasterImage image = renderLayer(layer, canvasWidth, canvasHeight);
    return image.isNull() ? RasterImage() : croppedImage(image, *coverage);
}

RasterImage croppedPixels(const RasterImage& image, double canvasWidth, double canvasHeight,
                          const model::PixelSelection& selection) {
    const QRectF rect(selection.x, selection.y, selection.width, selection.height);
    const auto coverage = SelectionCoverage::of(rect, canvasWidth, canvasHeight);
    if (!coverage || image.isNull()) return {};
    return croppedImage(image, *coverage);
}

void clearLayerPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                      const model::PixelSelection& selection) {
    rewriteCovered(layer, canvasWidth, canvasHeight, selection, clearedImage);
}

RasterImage clearedPixels(const RasterImage& image, double canvasWidth, double canvasHeight,
                          const model::PixelSelection& selection) {
    const auto coverage = SelectionCoverage::of(selection, canvasWidth, canvasHeight);
    if (!coverage || !QRect(0, 0, image.width(), image.height()).contains(coverage->rect()))
        return {};
    return clearedImage(image, *coverage);
}

bool flipLayerPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                     const std::optional<model::PixelSelection>& selection, MirrorAxis axis) {
    return rewriteCovered(layer, canvasWidth, canvasHeight, selection,
                          [axis](const RasterImage& image, const SelectionCoverage& coverage) {
                              return mirroredImage(image, coverage, axis);
                          });
}

std::optional<QRectF> opaquePixelBounds(const RasterImage& image, const QRectF& targetRect) {
    const std::optional<QRect> bounds = opaqueBounds(image, targetRect);
    if (!bounds) return std::nullopt;
    return QRectF(*bounds);
}

bool moveOpaquePixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                      const QRectF& block, const QPointF& place) {
    const auto coverage = SelectionCoverage::of(block, canvasWidth, canvasHeight);
    if (!coverage || !std::isfinite(place.x()) || !std::isfinite(place.y())) return false;
    const LayerRewrite rewrite(layer, canvasWidth, canvasHeight);
    if (rewrite.image().isNull()) return false;
    const RasterImage moved = imageWithBlockMoved(rewrite.image(), coverage->rect(), place);
    if (moved.isNull()) return false;
    rewrite.store(moved, coverage->rect() | blockAt(coverage->rect(), place));
    return true;
}

bool alignOpaquePixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                       const QRectF& targetRect, AlignHorizontalTarget horizontalTarget,
                       AlignVerticalTarget verticalTarget) {
    if (!layer.bitmapPNGData || !surfaceSize(canvasWidth, canvasHeight)) return false;
    const QRectF bounds = pixelAlignedRect(targetRect, canvasWidth, canvasHeight);
    if (bounds.isEmpty()) return false;
    const auto block = opaquePixelBounds(renderLayer(layer, canvasWidth, canvasHeight), bounds);
    if (!block) return false;
    const QPointF place(alignedLeft(horizontalTarget, *block, bounds),
                        alignedTop(verticalTarget, *block, bounds));
    const QPointF way = place - block->topLeft();
    if (std::abs(way.x()) < 0.5 && std::abs(way.y()) < 0.5) return false;
    return moveOpaquePixels(layer, canvasWidth, canvasHeight, *block, place);
}

bool rotateZoomLayerPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                           const std::optional<model::PixelSelection>& selection,
                           double angleDegrees, double zoomPercentage) {
    if (!std::isfinite(angleDegrees) || !std::isfinite(zoomPercentage)) return false;
    const RotateZoom turn{.angleDegrees = angleDegrees,
                          .scale = std::max(zoomPercentage / 100.0, 0.01)};
    return rewriteCovered(
        layer, canvasWidth, canvasHeight, selection,
        [&turn](const RasterImage& image, const SelectionCoverage& coverage) {
            return rotateZoomedImage(image, coverage, turn);
        },
        [&turn](const QRect& rect) { return turn.reach(rect); });
}

RasterImage transformedImage(const RasterImage& image, double canvasWidth, double canvasHeight,
                             const QRectF& targetRect) {
    return compositedTransformedImage(image, {}, canvasWidth, canvasHeight, targetRect);
}

RasterImage compositedTransformedImage(const RasterImage& image, const RasterImage& base,
                                       double canvasWidth, double canvasHeight,
                                       const QRectF& targetRect) {
    RasterImage canvas = copyImage(base, canvasWidth, canvasHeight);
    drawSamples(
        canvas, image,
        stretchSamples(image.width(), targetRect.x(), targetRect.width(), canvas.width()),
        stretchSamples(image.height(), targetRect.y(), targetRect.height(), canvas.height()), 255);
    return canvas;
}

} // namespace quillabrae::raster::LayerRasterService
