// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"

#include <QRectF>

#include <vector>

namespace quillabrae::raster {

/// A convex area with a border of straight lines, in document coordinates. Curved borders are cut
/// into so many lines that they are nowhere a thousandth of a pixel off. Empty without corners; a
/// single corner and a straight line are areas without size that can still be grown.
class ConvexRegion {
public:
    ConvexRegion() = default;
    /// `corners` in order round a convex polygon, with the inside on the right hand as seen.
    explicit ConvexRegion(std::vector<model::CanvasPoint> corners);

    static ConvexRegion rectangle(const QRectF& box);
    static ConvexRegion roundedRectangle(const QRectF& box, double radius);
    static ConvexRegion ellipse(const QRectF& box);
    /// All that lies inside the ellipse at least `distance` from its border.
    static ConvexRegion ellipseInset(const QRectF& box, double distance);

    /// All that lies at most `distance` away.
    ConvexRegion grown(double distance) const;
    /// All that lies inside at least `distance` from the border. The time grows with the square of
    /// the number of corners.
    ConvexRegion shrunk(double distance) const;

    bool isEmpty() const { return m_corners.empty(); }
    /// Neither height nor width may be there.
    QRectF bounds() const { return m_bounds; }

    /// The left and the right border from the top down.
    const std::vector<model::CanvasPoint>& left() const { return m_left; }
    const std::vector<model::CanvasPoint>& right() const { return m_right; }

private:
    std::vector<model::CanvasPoint> m_corners;
    std::vector<model::CanvasPoint> m_left;
    std::vector<model::CanvasPoint> m_right;
    QRectF m_bounds;
};

} // namespace quillabrae::raster
