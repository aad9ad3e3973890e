// SPDX-License-Identifier: GPL-3.0-or-later
// Growing a polygon pushes every side outward along its normal and joins the sides with arcs round
// the corners; shrinking it cuts off, along every side, a strip of that width. An ellipse
// p(t) = (a cos t, b sin t) with a >= b and normal n(t) shrinks to p(t) - d n(t), of which the
// parts that have crossed the long axis are no border: they are those with sin(t)^2 < ((d a / b)^2
// - b^2) / (a^2 - b^2).
#include "raster/ConvexRegion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace quillabrae::raster {
namespace {

using model::CanvasPoint;
using Corners = std::vector<CanvasPoint>;

constexpr double pi = std::numbers::pi;
/// How far a line may cut into the arc that it stands for.
constexpr double greatestSagitta = 1.0 / 1024.0;
/// Rounding of coordinates far away, seen from a turn.
constexpr double noTurn = 1e-9;

/// The longest step along an arc, which cuts radius * (1 - cos(step / 2)) off.
double arcStep(double radius) {
    return 2.0 * std::acos(1.0 - greatestSagitta / std::max(radius, 1.0));
}

int linesForArc(double radius, double angle) {
    return std::max(static_cast<int>(std::ceil(angle / arcStep(radius))), 1);
}

CanvasPoint plus(CanvasPoint a, CanvasPoint b, double factor) {
    return {a.x + factor * b.x, a.y + factor * b.y};
}

/// The normal, of length 1, that points out of the polygon.
CanvasPoint outwardNormal(CanvasPoint from, CanvasPoint to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return {(to.y - from.y) / length, (from.x - to.x) / length};
}

/// The angle from one normal to the next, 0 to a full turn.
double turnBetween(CanvasPoint from, CanvasPoint to) {
    const double angle = std::atan2(from.x * to.y - from.y * to.x, from.x * to.x + from.y * to.y);
    if (angle > -noTurn) return std::max(angle, 0.0);
    return angle < -pi / 2.0 ? angle + 2.0 * pi : 0.0;
}

/// Points round `center`, from the direction `start` on.
void appendArc(Corners& corners, CanvasPoint center, double radius, double start, double angle) {
    const int lines = linesForArc(radius, angle);
    for (int i = 0; i <= lines; ++i) {
        const double at = start + angle * i / lines;
        corners.push_back(plus(center, {std::cos(at), std::sin(at)}, radius));
    }
}

Corners withoutRepeats(Corners corners) {
    const auto isSame = [](CanvasPoint a, CanvasPoint b) { return a.x == b.x && a.y == b.y; };
    corners.erase(std::unique(corners.begin(), corners.end(), isSame), corners.end());
    while (corners.size() > 1 && isSame(corners.front(), corners.back())) corners.pop_back();
    return corners;
}

CanvasPoint next(const Corners& corners, std::size_t i) {
    return corners[i + 1 < corners.size() ? i + 1 : 0];
}

/// The part of a polygon on the inner side of a line.
Corners cut(const Corners& corners, CanvasPoint onLine, CanvasPoint outward) {
    const auto beyond = [&](CanvasPoint p) {
        return (p.x - onLine.x) * outward.x + (p.y - onLine.y) * outward.y;
    };
    Corners kept;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const CanvasPoint from = corners[i];
        const CanvasPoint to = next(corners, i);
        const double fromBeyond = beyond(from);
        const double toBeyond = beyond(to);
        if (fromBeyond <= 0.0) kept.push_back(from);
        if ((fromBeyond < 0.0 && toBeyond > 0.0) || (fromBeyond > 0.0 && toBeyond < 0.0)) {
            const double part = fromBeyond / (fromBeyond - toBeyond);
            kept.push_back(plus(from, {to.x - from.x, to.y - from.y}, part));
        }
    }
    return kept;
}

} // namespace

ConvexRegion::ConvexRegion(Corners corners) : m_corners(withoutRepeats(std::move(corners))) {
    if (m_corners.empty()) return;
    const auto byHeight = [](CanvasPoint a, CanvasPoint b) { return a.y < b.y; };
    const auto byWidth = [](CanvasPoint a, CanvasPoint b) { return a.x < b.x; };
    const auto [top, bottom] = std::ranges::minmax_element(m_corners, byHeight);
    const auto [leftmost, rightmost] = std::ranges::minmax_element(m_corners, byWidth);
    m_bounds = QRectF(QPointF(leftmost->x, top->y), QPointF(rightmost->x, bottom->y));

    // With the inside on the right hand, the right border is the one that runs down.
    const std::size_t count = m_corners.size();
    const auto first = static_cast<std::size_t>(top - m_corners.begin());
    const auto last = static_cast<std::size_t>(bottom - m_corners.begin());
    for (std::size_t i = first; i != last; i = (i + 1) % count) m_right.push_back(m_corners[i]);
    m_right.push_back(*bottom);
    for (std::size_t i = first; i != last; i = (i + count - 1) % count)
        m_left.push_back(m_corners[i]);
    m_left.push_back(*bottom);
}

ConvexRegion ConvexRegion::rectangle(const QRectF& box) {
    return ConvexRegion({{box.left(), box.top()},
                         {box.right(), box.top()},
                         {box.right(), box.bottom()},
                         {box.left(), box.bottom()}});
}

ConvexRegion ConvexRegion::roundedRectangle(const QRectF& box, double radius) {
    if (!(radius > 0.0)) return rectangle(box);
    const QRectF centers = box.adjusted(radius, radius, -radius, -radius);
    Corners corners;
    appendArc(corners, {centers.right(), centers.top()}, radius, -pi / 2.0, pi / 2.0);
    appendArc(corners, {centers.right(), centers.bottom()}, radius, 0.0, pi / 2.0);
    appendArc(corners, {centers.left(), centers.bottom()}, radius, pi / 2.0, pi / 2.0);
    appendArc(corners, {centers.left(), centers.top()}, radius, pi, pi / 2.0);
    return ConvexRegion(std::move(corners));
}

ConvexRegion ConvexRegion::ellipse(const QRectF& box) {
    if (box.width() > 0.0 && box.height() > 0.0) return ellipseInset(box, 0.0);
    return ConvexRegion({{box.left(), box.top()}, {box.right(), box.bottom()}});
}

ConvexRegion ConvexRegion::ellipseInset(const QRectF& box, double distance) {
    const bool isWide = box.width() >= box.height();
    const double a = std::max(box.width(), box.height()) / 2.0;
    const double b = std::min(box.width(), box.height()) / 2.0;
    if (!(distance < b)) return {};
    const CanvasPoint center{box.center().x(), box.center().y()};

    const double crossing = distance * a / b;
    const double squaredSine = a > b ? (crossing * crossing - b * b) / (a * a - b * b) : 0.0;
    const double first = std::asin(std::sqrt(std::clamp(squaredSine, 0.0, 1.0)));
    const double angle = pi - 2.0 * first;
    const int lines = linesForArc(a, angle);
    Corners corners;
    corners.reserve(2 * static_cast<std::size_t>(lines) + 2);
    for (const double start : {first, pi + first}) {
        for (int i = 0; i <= lines; ++i) {
            const double t = start + angle * i / lines;
            const double cosine = std::cos(t);
            const double sine = std::sin(t);
            const double inward = distance / std::hypot(b * cosine, a * sine);
            const double along = cosine * (a - inward * b);
            const double across = sine * (b - inward * a);
            // A quarter turn, which keeps the inside on the right hand, stands the ellipse up.
            corners.push_back(isWide ? CanvasPoint{center.x + along, center.y + across}
                                     : CanvasPoint{center.x - across, center.y + along});
        }
    }
    return ConvexRegion(std::move(corners));
}

ConvexRegion ConvexRegion::grown(double distance) const {
    if (m_corners.empty() || !(distance > 0.0)) return *this;
    Corners grownCorners;
    if (m_corners.size() == 1) {
        appendArc(grownCorners, m_corners.front(), distance, 0.0, 2.0 * pi);
        return ConvexRegion(std::move(grownCorners));
    }
    const double step = arcStep(distance);
    CanvasPoint before = outwardNormal(m_corners.back(), m_corners.front());
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
        const CanvasPoint after = outwardNormal(m_corners[i], next(m_corners, i));
        const double turn = turnBetween(before, after);
        if (turn > step) {
            appendArc(grownCorners, m_corners[i], distance, std::atan2(before.y, before.x), turn);
        } else {
            grownCorners.push_back(plus(m_corners[i], before, distance));
            grownCorners.push_back(plus(m_corners[i], after, distance));
        }
        before = after;
    }
    return ConvexRegion(std::move(grownCorners));
}

ConvexRegion ConvexRegion::shrunk(double distance) const {
    if (!(distance > 0.0)) return *this;
    if (m_corners.size() < 3) return {};
    Corners kept = m_corners;
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
        const CanvasPoint outward = outwardNormal(m_corners[i], next(m_corners, i));
        kept = cut(kept, plus(m_corners[i], outward, -distance), outward);
    }
    if (kept.size() < 3) return {};
    return ConvexRegion(std::move(kept));
}

} // namespace quillabrae::raster
