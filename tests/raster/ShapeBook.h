// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasShape.h"
#include "model/PaintStroke.h"
#include "raster/RasterImage.h"

#include <QRectF>

#include <optional>

namespace quillabrae::raster {

/// The shapes by the book: where a point lies, and how far from the border.
class BookShape {
public:
    BookShape(model::CanvasShape shape, const QRectF& box);

    bool holds(double x, double y) const;
    double distanceToBorder(double x, double y) const;

    /// The part of pixel (x, y) that lies inside.
    double interior(int x, int y) const;
    /// The part of pixel (x, y) that lies at most `reach` from the border.
    double outline(int x, int y, double reach) const;

private:
    bool ellipseHolds(double x, double y) const;
    double distanceToEllipse(double x, double y) const;
    bool roundedHolds(double x, double y) const;

    model::CanvasShape m_shape;
    QRectF m_box;
    std::vector<model::CanvasPoint> m_corners;
};

/// A stroke of the shapes tool, drawn pixel by pixel in floating point.
RasterImage bookShapeStroke(const model::PaintStroke& stroke, RasterImage image);

} // namespace quillabrae::raster
