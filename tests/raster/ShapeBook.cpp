// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/ShapeBook.h"

#include "raster/RasterFixtures.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {
namespace {

using model::CanvasPoint;
using model::CanvasShape;
using model::ShapeDrawingMode;

/// Samples along a pixel's side.
constexpr int samples = 64;
constexpr double goldenRatio = 1.618033988749895;
/// No point of a pixel is farther from its centre.
constexpr double pixelReach = 0.7072;

std::vector<CanvasPoint> cornersOf(CanvasShape shape, const QRectF& box) {
    const double l = box.left(), r = box.right(), t = box.top(), b = box.bottom();
    const double midX = (l + r) / 2, midY = (t + b) / 2, inset = (r - l) * 0.2;
    switch (shape) {
        case CanvasShape::rectangle:
            return {{l, t}, {r, t}, {r, b}, {l, b}};
        case CanvasShape::diamond:
            return {{midX, t}, {r, midY}, {midX, b}, {l, midY}};
        case CanvasShape::trapezoid:
            return {{l + inset, t}, {r - inset, t}, {r, b}, {l, b}};
        case CanvasShape::parallelogram:
            return {{l + inset, t}, {r, t}, {r - inset, b}, {l, b}};
        case CanvasShape::triangle:
            return {{midX, t}, {r, b}, {l, b}};
        case CanvasShape::rightTriangle:
            return {{l, t}, {r, b}, {l, b}};
        case CanvasShape::roundedRectangle:
        case CanvasShape::ellipse:
            break;
    }
    return {};
}

double distanceToSegment(double x, double y, CanvasPoint a, CanvasPoint b) {
    const double vx = b.x - a.x, vy = b.y - a.y;
    const double squared = vx * vx + vy * vy;
    double t = squared > 0 ? ((x - a.x) * vx + (y - a.y) * vy) / squared : 0;
    t = std::clamp(t, 0.0, 1.0);
    return std::hypot(x - (a.x + t * vx), y - (a.y + t * vy));
}

template <typename Holds>
double sampled(int x, int y, Holds holds) {
    int inside = 0;
    for (int j = 0; j < samples; ++j) {
        // Rows that are shifted against one another: no slanted line meets many samples.
        const double shift = std::fmod((j + 0.5) * goldenRatio, 1.0);
        for (int i = 0; i < samples; ++i)
            if (holds(x + (i + shift) / samples, y + (j + 0.5) / samples)) ++inside;
    }
    return static_cast<double>(inside) / (samples * samples);
}

} // namespace

BookShape::BookShape(CanvasShape shape, const QRectF& box)
    : m_shape(shape), m_box(box), m_corners(cornersOf(shape, box)) {}

bool BookShape::ellipseHolds(double x, double y) const {
    const double a = m_box.width() / 2, b = m_box.height() / 2;
    return std::hypot((x - m_box.center().x()) / a, (y - m_box.center().y()) / b) < 1.0;
}

/// The nearest point of the quarter (a cos t, b sin t): the one place where the way to it stands
/// upright on the border.
double BookShape::distanceToEllipse(double x, double y) const {
    double px = std::abs(x - m_box.center().x()), py = std::abs(y - m_box.center().y());
    double a = m_box.width() / 2, b = m_box.height() / 2;
    if (a < b) {
        std::swap(a, b);
        std::swap(px, py);
    }
    double low = 0.0, high = std::acos(-1.0) / 2;
    for (int i = 0; i < 20; ++i) {
        const double t = (low + high) / 2;
        const double toward =
            (px - a * std::cos(t)) * -a * std::sin(t) + (py - b * std::sin(t)) * b * std::cos(t);
        (toward > 0 ? low : high) = t;
    }
    return std::hypot(px - a * std::cos(low), py - b * std::sin(low));
}

bool BookShape::roundedHolds(double x, double y) const {
    if (!m_box.contains(x, y)) return false;
    const double radius = std::min(m_box.width(), m_box.height()) * 0.2;
    const double dx = std::max({m_box.left() + radius - x, x - (m_box.right() - radius), 0.0});
    const double dy = std::max({m_box.top() + radius - y, y - (m_box.bottom() - radius), 0.0});
    return std::hypot(dx, dy) < radius || dx == 0.0 || dy == 0.0;
}

bool BookShape::holds(double x, double y) const {
    if (m_shape == CanvasShape::ellipse) return ellipseHolds(x, y);
    if (m_shape == CanvasShape::roundedRectangle) return roundedHolds(x, y);
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
        const CanvasPoint a = m_corners[i], b = m_corners[(i + 1) % m_corners.size()];
        if ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x) < 0) return false;
    }
    return true;
}

double BookShape::distanceToBorder(double x, double y) const {
    if (m_shape == CanvasShape::ellipse) return distanceToEllipse(x, y);
    if (m_shape == CanvasShape::roundedRectangle) {
        // The rounded rectangle is all that lies within the radius of a smaller rectangle.
        const double radius = std::min(m_box.width(), m_box.height()) * 0.2;
        const double dx = std::abs(x - m_box.center().x()) - (m_box.width() / 2 - radius);
        const double dy = std::abs(y - m_box.center().y()) - (m_box.height() / 2 - radius);
        if (dx > 0 && dy > 0) return std::abs(std::hypot(dx, dy) - radius);
        return std::abs(std::max(dx, dy) - radius);
    }
    double least = distanceToSegment(x, y, m_corners.back(), m_corners.front());
    for (std::size_t i = 1; i < m_corners.size(); ++i)
        least = std::min(least, distanceToSegment(x, y, m_corners[i - 1], m_corners[i]));
    return least;
}

double BookShape::interior(int x, int y) const {
    if (distanceToBorder(x + 0.5, y + 0.5) > pixelReach) return holds(x + 0.5, y + 0.5) ? 1 : 0;
    return sampled(x, y, [this](double px, double py) { return holds(px, py); });
}

double BookShape::outline(int x, int y, double reach) const {
    const double distance = distanceToBorder(x + 0.5, y + 0.5);
    if (distance > reach + pixelReach) return 0;
    if (distance < reach - pixelReach) return 1;
    return sampled(x, y, [&](double px, double py) { return distanceToBorder(px, py) <= reach; });
}

RasterImage bookShapeStroke(const model::PaintStroke& stroke, RasterImage image) {
    const CanvasPoint a = stroke.points.front(), b = stroke.points.back();
    const QRectF box(QPointF(std::min(a.x, b.x), std::min(a.y, b.y)),
                     QPointF(std::max(a.x, b.x), std::max(a.y, b.y)));
    const BookShape shape(stroke.shape.value_or(CanvasShape::rectangle), box);
    const auto mode = stroke.shapeDrawingMode.value_or(ShapeDrawingMode::outline);
    const auto over = [&](int x, int y, double coverage, const model::ColorValue& color) {
        const double alpha = coverage * color.alpha;
        const Pixel under = pixelAt(image, x, y);
        const auto mixed = [&](int below, double component) {
            return static_cast<int>(std::lround(component * alpha * 255 + below * (1 - alpha)));
        };
        setPixel(image, x, y,
                 {mixed(under.red, color.red), mixed(under.green, color.green),
                  mixed(under.blue, color.blue), mixed(under.alpha, 1.0)});
    };
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (mode != ShapeDrawingMode::outline)
                over(x, y, shape.interior(x, y), stroke.secondaryColor.value_or(stroke.color));
            if (mode != ShapeDrawingMode::fill)
                over(x, y, shape.outline(x, y, stroke.lineWidth / 2), stroke.color);
        }
    }
    return image;
}

} // namespace quillabrae::raster
