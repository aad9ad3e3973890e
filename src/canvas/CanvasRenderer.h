// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "raster/RasterImage.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QRect>
#include <QSizeF>
#include <QUuid>

#include <memory>
#include <optional>

namespace quillabrae::canvas {

class CoverageCache;
class LiveSurroundings;

/// What a frame of the canvas shows and where. Borrowed for the length of a call: the renderer
/// keeps neither pointer, so a live image is never shared when the next sample is drawn on it.
struct CanvasFrame {
    const model::PaintProject* project = nullptr;
    double zoomScale = 1.0;
    /// Where the canvas's top left corner stands in the viewport, in points.
    QPointF canvasOrigin;
    /// In points.
    QSizeF viewportSize;
    double devicePixelRatio = 1.0;
    bool showsPixelGrid = false;
    /// The layer that `liveImage` stands for. Both, or neither.
    std::optional<QUuid> liveLayerID;
    const raster::RasterImage* liveImage = nullptr;
    /// The secondary label colour of the surroundings, from which the canvas's border is made.
    QColor secondaryLabelColor = QColor(0, 0, 0, 128);
};

/// Paints the canvas: transparency checker, visible layers with the live image in its layer's
/// place, floating pixels, border and pixel grid. Samples the layers at device resolution, nearest
/// neighbour, and touches nothing outside the canvas: the surroundings are the caller's.
///
/// While a live image is shown, what lies below and above its layer is kept as composites of the
/// viewport, made tile by tile where the dirty rectangles fall. A frame without one drops them.
///
/// A paint that there is not enough memory for leaves out the layers that it cannot show, or throws
/// std::bad_alloc; the next one is whole.
class CanvasRenderer {
public:
    CanvasRenderer();
    ~CanvasRenderer();
    CanvasRenderer(CanvasRenderer&&) noexcept;
    CanvasRenderer& operator=(CanvasRenderer&&) noexcept;

    /// Paints the part of the canvas inside `dirty` (points of the viewport). The painter draws in
    /// points of the viewport on a device of the frame's pixel ratio.
    void paint(QPainter& painter, const CanvasFrame& frame, const QRect& dirty);

    /// Paints the part inside `dirty` (device pixels of the viewport) into `target`, whose pixel
    /// (0, 0) is the viewport's. RGB32 or ARGB32_Premultiplied.
    void paint(QImage& target, const CanvasFrame& frame, const QRect& dirty);

private:
    class Job;

    /// Null for a frame without a live image.
    LiveSurroundings* surroundingsFor(const CanvasFrame& frame);

    std::unique_ptr<LiveSurroundings> m_surroundings;
    std::unique_ptr<CoverageCache> m_coverage;
    QImage m_strip;
};

/// The viewport's device pixels.
QRect viewportDeviceRect(const CanvasFrame& frame);

/// The points of the viewport that show any part of `canvasRect` (canvas pixels): what to repaint
/// when those pixels change. Not clipped to the viewport.
QRect viewportRect(const CanvasFrame& frame, const QRectF& canvasRect);

/// Whether the grid is shown: asked for, and at most 240 canvas pixels visible along each axis.
bool shouldDrawPixelGrid(const CanvasFrame& frame);

} // namespace quillabrae::canvas
