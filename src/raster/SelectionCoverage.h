// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PixelSelection.h"
#include "raster/RasterImage.h"
#include "raster/Stretch.h"

#include <QRect>
#include <QSizeF>

#include <optional>
#include <span>

namespace quillabrae::raster {

/// What a selection covers of a canvas: a rectangle of whole pixels, and how far each of its pixels
/// is selected, 0 to 255.
///
/// The rectangle is the selection's, clipped to the canvas and snapped outward. A mask is stretched
/// to it nearest-neighbour when it is of another size (one that was made for a rectangle
/// overhanging the canvas is thus squeezed). Without a mask, or with an unreadable one, all of it
/// is selected.
class SelectionCoverage {
public:
    /// Nothing when the selection holds no pixel of the canvas, or the canvas is refused.
    static std::optional<SelectionCoverage> of(const model::PixelSelection& selection,
                                               double canvasWidth, double canvasHeight);
    /// The same of a plain rectangle in document coordinates.
    static std::optional<SelectionCoverage> of(const QRectF& rect, double canvasWidth,
                                               double canvasHeight);
    /// All of a rectangle of pixels that lies on the surface.
    static SelectionCoverage ofPixels(const QRect& rect) { return {rect, rect.size()}; }

    /// On the canvas's surface; never empty.
    QRect rect() const { return m_rect; }
    /// The rectangle's size in canvas pixels, which ends between two where the canvas does.
    QSizeF logicalSize() const { return m_logicalSize; }
    bool isMasked() const { return !m_mask.isNull(); }

    /// The coverage of row `y` of the rectangle, 0 being its top; as many bytes as it is wide.
    /// Only for a masked one.
    void readRow(int y, std::span<std::uint8_t> coverage) const;

private:
    SelectionCoverage(QRect rect, QSizeF logicalSize) : m_rect(rect), m_logicalSize(logicalSize) {}

    QRect m_rect;
    QSizeF m_logicalSize;
    RasterImage m_mask;
    AxisSamples m_columns;
    AxisSamples m_rows;
};

} // namespace quillabrae::raster
