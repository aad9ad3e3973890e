// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "raster/StrokeEdge.h"

#include <cstdint>

namespace quillabrae::raster {

/// Pixels `first` to `end` - 1 of a row.
struct PixelSpan {
    int first = 0;
    int end = 0;

    bool isEmpty() const { return first >= end; }
};

/// The centre line of a piece of a stroke: all that lies within some distance of it is a capsule, a
/// rectangle with half a disc on either end. A line without length is a dot.
class Capsule {
public:
    Capsule(model::CanvasPoint from, model::CanvasPoint to);

    double top() const;
    double bottom() const;
    double left() const;
    double right() const;

    /// The pixels of row `y`, within 0 to `width` - 1, whose centres are at most `radius` away.
    PixelSpan spanWithin(double radius, int y, int width) const;

    /// alpha[i] = the edge's alpha at pixel (span.first + i, y).
    void writeAlpha(const StrokeEdge& edge, int y, PixelSpan span, std::uint8_t* alpha) const;
    /// The same, or what was there if that is more.
    void raiseAlpha(const StrokeEdge& edge, int y, PixelSpan span, std::uint8_t* alpha) const;

private:
    template <typename Use>
    void forEachRun(const StrokeEdge& edge, int y, PixelSpan span, Use use) const;

    model::CanvasPoint m_from;
    model::CanvasPoint m_to;
    /// From `m_from` to `m_to`, of length 1; (1, 0) for a dot.
    model::CanvasPoint m_direction;
    double m_length = 0.0;
};

} // namespace quillabrae::raster
