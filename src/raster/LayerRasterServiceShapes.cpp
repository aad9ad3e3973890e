// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing shapes and gradients onto surfaces.
#include "raster/LayerRasterServiceShapes.h"

#include "raster/BlendKernels.h"
#include "raster/GradientKernel.h"
#include "raster/Parallel.h"
#include "raster/RegionCoverage.h"
#include "raster/ShapeGeometry.h"
#include "raster/StrokeLimits.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace quillabrae::raster::LayerRasterService {
namespace {

using model::CanvasPoint;
using model::CanvasShape;
using model::PaintStroke;
using model::ShapeDrawingMode;

/// Work for one thread that is worth waking another for.
constexpr int pixelsPerBand = 1 << 15;

/// Rows of a wide layer lie so far apart that the processor does not foresee where a border goes
/// on.
constexpr int rowsAhead = 3;

struct EndPoints {
    CanvasPoint first;
    CanvasPoint last;

    QRectF box() const {
        return QRectF(QPointF(std::min(first.x, last.x), std::min(first.y, last.y)),
                      QPointF(std::max(first.x, last.x), std::max(first.y, last.y)));
    }
};

std::optional<EndPoints> endPoints(const PaintStroke& stroke) {
    if (stroke.points.empty()) return std::nullopt;
    const std::optional<CanvasPoint> first = drawablePoint(stroke.points.front());
    const std::optional<CanvasPoint> last = drawablePoint(stroke.points.back());
    if (!first || !last) return std::nullopt;
    return EndPoints{*first, *last};
}

/// An area and the colour it is painted with.
struct Paint {
    BorderLine area;
    PixelColor color;
    /// 0 to 1, in place of the colour's own.
    double alpha;

    static Paint of(BorderLine area, const model::ColorValue& color) {
        return {std::move(area), PixelColor::of(color), std::clamp(color.alpha, 0.0, 1.0)};
    }
    bool isVisible() const { return !area.outer.isEmpty() && alpha > 0.0; }
};

QRect pixelsOf(const ConvexRegion& region, const RasterImage& image) {
    const auto held = [](double value, int limit) {
        return static_cast<int>(std::clamp(value, 0.0, double(limit)));
    };
    const QRectF bounds = region.bounds();
    const QPoint first(held(std::floor(bounds.left()), image.width()),
                       held(std::floor(bounds.top()), image.height()));
    const QPoint end(held(std::ceil(bounds.right()), image.width()),
                     held(std::ceil(bounds.bottom()), image.height()));
    if (first.x() >= end.x() || first.y() >= end.y()) return {};
    return QRect(first, end - QPoint(1, 1));
}

void paintRun(std::uint8_t* row, const CoverageRun& run, PixelColor color) {
    std::uint8_t* const pixels = row + 4 * static_cast<std::size_t>(run.first);
    const auto count = static_cast<std::size_t>(run.end - run.first);
    if (run.alpha != nullptr) {
        sourceOverColor(pixels, run.alpha, count, color);
        return;
    }
    color.alpha = run.flatAlpha;
    sourceOverColor(pixels, count, color);
}

/// Paints the areas one over the other, row by row.
QRect drawPaints(const std::vector<Paint>& paints, RasterImage& image) {
    QRect dirty;
    for (const Paint& paint : paints)
        if (paint.isVisible()) dirty |= pixelsOf(paint.area.outer, image);
    if (dirty.isEmpty()) return {};
    std::uint8_t* const pixels = image.mutableBytes().data();
    const std::size_t stride = image.stride();
    const auto drawRows = [&](int first, int end) {
        std::vector<RegionCoverage> coverages;
        for (const Paint& paint : paints)
            coverages.emplace_back(paint.area.outer, paint.area.inner, paint.alpha, dirty.left(),
                                   dirty.right() + 1);
        for (int y = dirty.top() + first; y < dirty.top() + end; ++y) {
            std::uint8_t* const row = pixels + static_cast<std::size_t>(y) * stride;
            for (std::size_t i = 0; i < paints.size(); ++i)
                for (const CoverageRun& run : coverages[i].row(y)) {
                    if (run.alpha != nullptr && y + rowsAhead < image.height())
                        __builtin_prefetch(
                            row + rowsAhead * stride + 4 * static_cast<std::size_t>(run.first), 1);
                    paintRun(row, run, paints[i].color);
                }
        }
    };
    parallelForRowBands(dirty.height(), std::max(pixelsPerBand / dirty.width(), 1), drawRows);
    return dirty;
}

} // namespace

QRect drawShape(const PaintStroke& stroke, RasterImage& image) {
    const std::optional<EndPoints> ends = endPoints(stroke);
    if (!ends) return {};
    const CanvasShape shape = stroke.shape.value_or(CanvasShape::rectangle);
    const ShapeDrawingMode mode = stroke.shapeDrawingMode.value_or(ShapeDrawingMode::outline);
    std::vector<Paint> paints;
    if (includesFill(mode))
        paints.push_back(Paint::of({shapeInterior(shape, ends->box()), {}},
                                   stroke.secondaryColor.value_or(stroke.color)));
    if (includesOutline(mode))
        paints.push_back(Paint::of(
            shapeOutline(shape, ends->box(), drawableWidth(stroke.lineWidth)), stroke.color));
    return drawPaints(paints, image);
}

QRect drawRectangle(const PaintStroke& stroke, RasterImage& image) {
    const std::optional<EndPoints> ends = endPoints(stroke);
    if (!ends) return {};
    return drawPaints(
        {Paint::of(sharpRectangleOutline(ends->box(), drawableWidth(stroke.lineWidth)),
                   stroke.color)},
        image);
}

QRect drawEllipse(const PaintStroke& stroke, RasterImage& image) {
    const std::optional<EndPoints> ends = endPoints(stroke);
    if (!ends) return {};
    return drawPaints(
        {Paint::of(shapeOutline(CanvasShape::ellipse, ends->box(), drawableWidth(stroke.lineWidth)),
                   stroke.color)},
        image);
}

QRect fillBox(const PaintStroke& stroke, RasterImage& image) {
    const std::optional<EndPoints> ends = endPoints(stroke);
    if (!ends) return {};
    return drawPaints({Paint::of({ConvexRegion::rectangle(ends->box()), {}}, stroke.color)}, image);
}

QRect drawGradient(const PaintStroke& stroke, RasterImage& image) {
    const std::optional<EndPoints> ends = endPoints(stroke);
    if (!ends) return {};
    if (std::hypot(ends->last.x - ends->first.x, ends->last.y - ends->first.y) <= 0.0) return {};
    const LinearGradient gradient(ends->first, stroke.color, ends->last,
                                  stroke.secondaryColor.value_or(stroke.color));
    const auto width = static_cast<std::size_t>(image.width());
    std::uint8_t* const pixels = image.mutableBytes().data();
    const std::size_t stride = image.stride();
    const auto drawRows = [&](int first, int end) {
        std::vector<std::uint8_t> source(gradient.isOpaque() ? 0 : stride);
        for (int y = first; y < end; ++y) {
            std::uint8_t* const row = pixels + static_cast<std::size_t>(y) * stride;
            gradient.writePixels(gradient.isOpaque() ? row : source.data(), 0, y, width);
            if (!gradient.isOpaque()) sourceOverPixels(row, source.data(), width, 255);
        }
    };
    parallelForRowBands(image.height(), std::max(pixelsPerBand / image.width(), 1), drawRows);
    return {0, 0, image.width(), image.height()};
}

} // namespace quillabrae::raster::LayerRasterService
