// SPDX-License-Identifier: GPL-3.0-or-later
// Every shape is convex. A line with round joins along its border is then all that lies within half
// a line's width of the shape, less what lies at least as deep inside it.
#include "raster/ShapeGeometry.h"

#include <algorithm>

namespace quillabrae::raster {
namespace {

using model::CanvasShape;

/// Of the shorter side.
constexpr double cornerRadiusPart = 0.2;
/// Of the width: how far a slanted side leans.
constexpr double slantPart = 0.2;

double cornerRadius(const QRectF& box) {
    return std::min(box.width(), box.height()) * cornerRadiusPart;
}

QRectF shrunkBox(const QRectF& box, double distance) {
    return box.adjusted(distance, distance, -distance, -distance);
}

ConvexRegion polygon(CanvasShape shape, const QRectF& box) {
    const double left = box.left();
    const double right = box.right();
    const double top = box.top();
    const double bottom = box.bottom();
    const double slant = box.width() * slantPart;
    switch (shape) {
        case CanvasShape::diamond:
            return ConvexRegion({{box.center().x(), top},
                                 {right, box.center().y()},
                                 {box.center().x(), bottom},
                                 {left, box.center().y()}});
        case CanvasShape::trapezoid:
            return ConvexRegion(
                {{left + slant, top}, {right - slant, top}, {right, bottom}, {left, bottom}});
        case CanvasShape::parallelogram:
            return ConvexRegion(
                {{left + slant, top}, {right, top}, {right - slant, bottom}, {left, bottom}});
        case CanvasShape::triangle:
            return ConvexRegion({{box.center().x(), top}, {right, bottom}, {left, bottom}});
        case CanvasShape::rightTriangle:
            return ConvexRegion({{left, top}, {right, bottom}, {left, bottom}});
        default:
            return ConvexRegion::rectangle(box);
    }
}

/// What of the shape lies at least `distance` deep.
ConvexRegion depth(CanvasShape shape, const QRectF& box, double distance) {
    if (shape == CanvasShape::ellipse) return ConvexRegion::ellipseInset(box, distance);
    if (!(2.0 * distance < std::min(box.width(), box.height()))) return {};
    if (shape == CanvasShape::roundedRectangle)
        return ConvexRegion::roundedRectangle(shrunkBox(box, distance),
                                              cornerRadius(box) - distance);
    return polygon(shape, box).shrunk(distance);
}

} // namespace

ConvexRegion shapeInterior(CanvasShape shape, const QRectF& box) {
    if (shape == CanvasShape::ellipse) return ConvexRegion::ellipse(box);
    if (shape == CanvasShape::roundedRectangle)
        return ConvexRegion::roundedRectangle(box, cornerRadius(box));
    return polygon(shape, box);
}

BorderLine shapeOutline(CanvasShape shape, const QRectF& box, double lineWidth) {
    if (!(lineWidth > 0.0)) return {};
    const double distance = lineWidth / 2.0;
    return {shapeInterior(shape, box).grown(distance), depth(shape, box, distance)};
}

BorderLine sharpRectangleOutline(const QRectF& box, double lineWidth) {
    if (!(lineWidth > 0.0)) return {};
    const double distance = lineWidth / 2.0;
    return {ConvexRegion::rectangle(shrunkBox(box, -distance)),
            depth(CanvasShape::rectangle, box, distance)};
}

} // namespace quillabrae::raster
