// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/TransformDrag.h"
#include "model/PaintProject.h"
#include "raster/RasterImage.h"

#include <QRect>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace quillabrae::model {
struct PaintLayer;
} // namespace quillabrae::model

namespace quillabrae::canvas {

class CanvasContext;
class ZoomController;

/// Moving or resizing the pixels under the selection, or those that float. They lift off their
/// layer in a live image that is shown in the layer's place, and land when the drag ends; the layer
/// itself does not change before that. Pixels beyond the canvas's edge are lost then.
class PixelTransformGesture {
public:
    PixelTransformGesture(CanvasContext& context, const ZoomController& zoom)
        : m_context(context), m_zoom(zoom) {}

    bool isRunning() const { return m_drag.has_value(); }
    void transformSelectedPixels(const DragValue& value);
    /// Runs the latest sample again, with the modifiers as they are now.
    void refresh();
    /// Lets the pixels land and records it. Floating pixels go on floating at their new place.
    void finish();
    void reset();
    /// Gives up a drag whose layer, canvas or floating pixels are no longer what they were when it
    /// began, or whose selection is no longer what it has made.
    void giveUpIfStale();

    const std::optional<QUuid>& activeSelectionLayerID() const { return m_activeSelectionLayerID; }
    /// The layer as it looks now; null when nothing runs.
    const raster::RasterImage& liveSelectionImage() const { return m_liveSelectionImage; }
    /// Counts the changes of the live image.
    std::uint64_t liveSelectionRevision() const { return m_liveSelectionRevision; }

private:
    bool begin(const model::PaintLayer& layer, const model::PixelSelection& selection,
               const DragValue& value);
    void lift(const model::PaintLayer& layer, const model::PixelSelection& selection);
    void renderLiveImage(const QRectF& rect);
    const model::PaintLayer* layerUnder(const model::PaintProject& project) const;
    void land(const model::PaintLayer& layer);

    CanvasContext& m_context;
    const ZoomController& m_zoom;
    std::optional<TransformDrag> m_drag;
    /// The active project when the drag began, and its selection as the drag last left it.
    std::optional<model::PaintProject> m_projectAtStart;
    std::optional<model::PixelSelection> m_shownSelection;
    std::optional<QUuid> m_activeSelectionLayerID;
    /// The pixels in motion, at the size they had.
    raster::RasterImage m_selectionBaseImage;
    /// The layer without them.
    raster::RasterImage m_selectionCompositeBaseImage;
    raster::RasterImage m_liveSelectionImage;
    std::uint64_t m_liveSelectionRevision = 0;
    /// Where the live image differs from the composite, and the composite from the layer.
    QRect m_drawnRect;
    QRect m_liftedRect;
};

} // namespace quillabrae::canvas
