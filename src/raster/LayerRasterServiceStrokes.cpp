// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing strokes onto surfaces: one row of the table below for each tool that paints.
#include "model/PaintTool.h"
#include "raster/BlendKernels.h"
#include "raster/Capsule.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceShapes.h"
#include "raster/Parallel.h"
#include "raster/StrokeEdge.h"
#include "raster/StrokeLimits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace quillabrae::raster::LayerRasterService {
namespace {

using model::CanvasPoint;
using model::PaintStroke;
using model::PaintTool;

enum class Compositing { sourceOver, destinationOut };

/// Work for one thread that is worth waking another for.
constexpr int pixelsPerBand = 1 << 15;

/// Pixels for which it does not pay to tell a stroke's inside from its edges.
constexpr int shortRun = 64;

std::vector<CanvasPoint> drawablePoints(const std::vector<CanvasPoint>& points) {
    std::vector<CanvasPoint> drawable;
    drawable.reserve(points.size());
    for (const CanvasPoint& point : points) {
        if (const auto held = drawablePoint(point)) drawable.push_back(*held);
    }
    return drawable;
}

std::vector<Capsule> capsulesThrough(const std::vector<CanvasPoint>& points) {
    std::vector<Capsule> capsules;
    if (points.size() == 1) capsules.emplace_back(points.front(), points.front());
    for (std::size_t i = 1; i < points.size(); ++i) capsules.emplace_back(points[i - 1], points[i]);
    return capsules;
}

/// The pixels of the image that the capsules may touch.
QRect reachedPixels(const std::vector<Capsule>& capsules, double reach, const RasterImage& image) {
    double left = farAway;
    double top = farAway;
    double right = -farAway;
    double bottom = -farAway;
    for (const Capsule& capsule : capsules) {
        left = std::min(left, capsule.left());
        top = std::min(top, capsule.top());
        right = std::max(right, capsule.right());
        bottom = std::max(bottom, capsule.bottom());
    }
    const auto firstPixel = [](double low, int limit) {
        return static_cast<int>(std::clamp(std::floor(low), 0.0, double(limit)));
    };
    const auto endPixel = [](double high, int limit) {
        return static_cast<int>(std::clamp(std::ceil(high), 0.0, double(limit)));
    };
    const QPoint first(firstPixel(left - reach, image.width()),
                       firstPixel(top - reach, image.height()));
    const QPoint end(endPixel(right + reach, image.width()),
                     endPixel(bottom + reach, image.height()));
    if (first.x() >= end.x() || first.y() >= end.y()) return {};
    return QRect(first, end - QPoint(1, 1));
}

/// Draws the union of capsules, each pixel once with the alpha of its distance to the nearest.
class CapsulePainter {
public:
    /// For the pixels of `area`, which reaches as far as the stroke.
    CapsulePainter(RasterImage& image, const QRect& area, const StrokeEdge& edge, PixelColor color,
                   Compositing compositing)
        : m_pixels(image.mutableBytes().data()),
          m_stride(image.stride()),
          m_area(area),
          m_edge(edge),
          m_color(color),
          m_compositing(compositing) {
        m_color.alpha = edge.maximum();
    }

    void paintRows(const std::vector<Capsule>& capsules, int firstRow, int endRow) const {
        std::vector<const Capsule*> near;
        for (const Capsule& capsule : capsules) {
            if (capsule.top() - m_edge.reach() < endRow &&
                capsule.bottom() + m_edge.reach() > firstRow)
                near.push_back(&capsule);
        }
        std::vector<std::uint8_t> alpha(static_cast<std::size_t>(m_area.width()));
        if (m_area.width() <= shortRun) {
            for (int y = firstRow; y < endRow; ++y) fetch(y, {m_area.left(), m_area.right() + 1});
        }
        for (int y = firstRow; y < endRow; ++y) {
            if (near.size() == 1) {
                paintRow(*near.front(), y, alpha.data());
            } else {
                paintUnionRow(near, y, alpha.data());
            }
        }
    }

private:
    /// The pixels of a row that a capsule reaches, and among them those of its flat inside.
    struct Reach {
        PixelSpan outer;
        PixelSpan inner;
    };

    Reach reachOf(const Capsule& capsule, int y) const {
        const int end = m_area.right() + 1;
        const PixelSpan outer = capsule.spanWithin(m_edge.reach(), y, end);
        // A short run is done in one go.
        if (outer.end - outer.first <= shortRun) return {outer, {outer.end, outer.end}};
        const PixelSpan inner = capsule.spanWithin(m_edge.flatRadius(), y, end);
        if (inner.isEmpty()) return {outer, {outer.end, outer.end}};
        return {outer, inner};
    }

    /// The edges from the table, the flat inside in one go.
    void paintRow(const Capsule& capsule, int y, std::uint8_t* alpha) const {
        const auto [outer, inner] = reachOf(capsule, y);
        for (const PixelSpan span :
             {PixelSpan{outer.first, inner.first}, PixelSpan{inner.end, outer.end}}) {
            if (span.isEmpty()) continue;
            fetch(y, span);
            capsule.writeAlpha(m_edge, y, span, alpha);
            blend(y, span, alpha);
        }
        blendFlat(y, inner);
    }

    void paintUnionRow(const std::vector<const Capsule*>& capsules, int y,
                       std::uint8_t* alpha) const {
        PixelSpan touched{m_area.right() + 1, m_area.left()};
        std::fill_n(alpha, m_area.width(), std::uint8_t{0});
        const auto alphaAt = [&](int x) { return alpha + (x - m_area.left()); };
        for (const Capsule* capsule : capsules) {
            const auto [outer, inner] = reachOf(*capsule, y);
            if (outer.isEmpty()) continue;
            for (const PixelSpan span :
                 {PixelSpan{outer.first, inner.first}, PixelSpan{inner.end, outer.end}})
                capsule->raiseAlpha(m_edge, y, span, alphaAt(span.first));
            std::fill(alphaAt(inner.first), alphaAt(inner.end), m_edge.maximum());
            touched = {std::min(touched.first, outer.first), std::max(touched.end, outer.end)};
        }
        if (!touched.isEmpty()) blend(y, touched, alphaAt(touched.first));
    }

    std::uint8_t* pixels(int y, int x) const {
        return m_pixels + static_cast<std::size_t>(y) * m_stride + 4 * static_cast<std::size_t>(x);
    }

    /// Rows of a wide layer lie so far apart that the processor does not foresee the next one.
    void fetch(int y, PixelSpan span) const {
        constexpr int pixelsPerCacheLine = 16;
        for (int x = span.first; x < span.end; x += pixelsPerCacheLine)
            __builtin_prefetch(pixels(y, x), 1);
    }

    void blend(int y, PixelSpan span, const std::uint8_t* alpha) const {
        const auto count = static_cast<std::size_t>(span.end - span.first);
        if (m_compositing == Compositing::sourceOver) {
            sourceOverColor(pixels(y, span.first), alpha, count, m_color);
        } else {
            destinationOutPixels(pixels(y, span.first), alpha, count);
        }
    }

    void blendFlat(int y, PixelSpan span) const {
        if (span.isEmpty()) return;
        const auto count = static_cast<std::size_t>(span.end - span.first);
        if (m_compositing == Compositing::sourceOver) {
            sourceOverColor(pixels(y, span.first), count, m_color);
        } else {
            destinationOutPixels(pixels(y, span.first), count, m_edge.maximum());
        }
    }

    std::uint8_t* m_pixels;
    std::size_t m_stride;
    QRect m_area;
    const StrokeEdge& m_edge;
    PixelColor m_color;
    Compositing m_compositing;
};

/// A polyline or a dot with the given edge.
QRect drawLine(const PaintStroke& stroke, std::optional<double> hardness,
               const model::ColorValue& color, Compositing compositing, RasterImage& image) {
    const std::vector<CanvasPoint> points = drawablePoints(stroke.points);
    const StrokeForm form = stroke.points.size() == 1 ? StrokeForm::dot : StrokeForm::line;
    const double alpha = color.alpha > 0.0 ? std::min(color.alpha, 1.0) : 0.0;
    const std::shared_ptr<const StrokeEdge> edge =
        strokeEdge(stroke.lineWidth, hardness, alpha, form);
    if (points.empty() || edge->maximum() == 0) return {};

    const std::vector<Capsule> capsules = capsulesThrough(points);
    const QRect dirty = reachedPixels(capsules, edge->reach(), image);
    if (dirty.isEmpty()) return {};
    const CapsulePainter painter(image, dirty, *edge, PixelColor::of(color), compositing);
    parallelForRowBands(dirty.height(), std::max(pixelsPerBand / dirty.width(), 1),
                        [&](int first, int last) {
                            painter.paintRows(capsules, dirty.top() + first, dirty.top() + last);
                        });
    return dirty;
}

/// A brush's edge is always hard.
QRect drawBrush(const PaintStroke& stroke, RasterImage& image) {
    return drawLine(stroke, std::nullopt, stroke.color, Compositing::sourceOver, image);
}

QRect drawPencil(const PaintStroke& stroke, RasterImage& image) {
    return drawLine(stroke, stroke.hardness, stroke.color, Compositing::sourceOver, image);
}

/// Removes what a pencil of full strength would add.
QRect drawEraser(const PaintStroke& stroke, RasterImage& image) {
    constexpr model::ColorValue black{0.0, 0.0, 0.0, 1.0};
    return drawLine(stroke, stroke.hardness, black, Compositing::destinationOut, image);
}

struct ToolRow {
    PaintTool tool;
    QRect (*draw)(const PaintStroke& stroke, RasterImage& image);
};

/// Tools that are not listed draw nothing.
constexpr std::array toolRows{
    ToolRow{PaintTool::paintbrush, drawBrush}, ToolRow{PaintTool::cloneStamp, drawBrush},
    ToolRow{PaintTool::recolor, drawBrush},    ToolRow{PaintTool::pencil, drawPencil},
    ToolRow{PaintTool::lineCurve, drawPencil}, ToolRow{PaintTool::eraser, drawEraser},
    ToolRow{PaintTool::paintBucket, fillBox},  ToolRow{PaintTool::gradient, drawGradient},
    ToolRow{PaintTool::shapes, drawShape},     ToolRow{PaintTool::rectangle, drawRectangle},
    ToolRow{PaintTool::ellipse, drawEllipse},
};

} // namespace

QRect drawStroke(const PaintStroke& stroke, RasterImage& image, double, double) {
    if (stroke.points.empty() || image.isNull()) return {};
    const auto row = std::ranges::find(toolRows, stroke.tool, &ToolRow::tool);
    if (row == toolRows.end()) return {};
    return row->draw(stroke, image);
}

} // namespace quillabrae::raster::LayerRasterService
