// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasComposer.h"
#include "canvas/CanvasRenderer.h"
#include "canvas/DeviceView.h"
#include "raster/RasterImage.h"

#include <QRect>

#include <cstddef>
#include <memory>
#include <vector>

namespace quillabrae::canvas {

/// What lies below and above the live layer, as composites of the viewport's device pixels, made
/// tile by tile where they are asked for. A side of a single picture or none is not kept: composing
/// it costs no more than reading its composite.
class LiveSurroundings {
public:
    LiveSurroundings();
    ~LiveSurroundings();

    /// Makes what `device`, pixels of the canvas within the viewport, shows. Starts anew when the
    /// frame shows other layers, or shows them elsewhere, than the frame before. Throws
    /// std::bad_alloc where there is no memory for it. What it throws in, or leaves a layer out of
    /// for want of memory, is made again the next time.
    void prepare(const CanvasFrame& frame, const DeviceView& view, const QRect& device,
                 CoverageCache& coverage);

    /// The composites, and the pictures that go between them.
    ComposerGround ground() const;
    std::vector<CanvasPicture> picturesBetween(const CanvasFrame& frame, const DeviceView& view,
                                               const QRect& device, CoverageCache& coverage) const;

private:
    struct Key;

    bool isFor(const CanvasFrame& frame) const;
    void startFor(const CanvasFrame& frame);
    std::size_t tileIndex(int column, int row) const {
        return static_cast<std::size_t>(row) * m_tileColumns + static_cast<std::size_t>(column);
    }
    /// The parts of the canvas that `device` shows in tiles that are not made yet.
    std::vector<QRect> missingTiles(const DeviceView& view, const QRect& device) const;
    void countAsMade(const QRect& device);

    std::unique_ptr<Key> m_key;
    std::size_t m_liveIndex = 0;
    raster::RasterImage m_below;
    raster::RasterImage m_above;
    QRect m_viewport;
    std::size_t m_tileColumns = 0;
    std::vector<unsigned char> m_isTileMade;
};

/// The index of the layer that the frame's live image stands for; the number of layers when it has
/// none.
std::size_t liveLayerIndex(const CanvasFrame& frame);

} // namespace quillabrae::canvas
