// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/PaintLayer.h"
#include "model/PaintStroke.h"
#include "model/PaintTool.h"
#include "raster/PictureVersions.h"
#include "raster/RasterImage.h"

#include <QRect>
#include <QString>
#include <QUuid>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillabrae::canvas {

class CanvasContext;

enum class DrawingButton { left, right };

/// The layer under edit while a drawing gesture runs: rendered once at the first sample, drawn on
/// in place, shown instead of the layer, and encoded once at the end.
class LiveDrawing {
public:
    explicit LiveDrawing(CanvasContext& context) : m_context(context) {}

    /// The layer under edit; set means that a gesture is running.
    const std::optional<QUuid>& activeDrawingLayerID() const { return m_activeDrawingLayerID; }
    bool isRunning() const { return m_activeDrawingLayerID.has_value(); }
    /// What the layer looks like now; null when nothing runs.
    const raster::RasterImage& liveDrawingImage() const { return m_liveDrawingImage; }
    /// Counts the changes of the live image.
    std::uint64_t liveDrawingRevision() const { return m_liveDrawingRevision; }
    bool didRasterizeDrawing() const { return m_didRasterizeDrawing; }

    /// The colour of this gesture; none means the primary colour.
    const std::optional<model::ColorValue>& activeDrawingColor() const {
        return m_activeDrawingColor;
    }
    void setActiveDrawingColor(const model::ColorValue& color) { m_activeDrawingColor = color; }
    /// The button that draws; it decides which colour a shape is filled with.
    void setButton(DrawingButton button) { m_button = button; }
    DrawingButton button() const { return m_button; }

    /// Starts the gesture on `layer` of the active project, or starts it over on what has become of
    /// that.
    void begin(const model::PaintLayer& layer);
    /// Whether a gesture runs on a layer that is gone from the active project, or is not what it
    /// was at the first sample, or whose canvas has another size now.
    bool isStale() const;
    /// Draws one stroke of the current tool through `points` on the live image. The first one of a
    /// gesture drops the selection.
    void drawLiveStroke(std::vector<model::CanvasPoint> points);
    /// Takes back what was drawn: the layer as it was at the first sample.
    void restoreBase();
    /// Shows the pixels of `drawn`, an edited copy of the layer under edit. Drops the selection.
    void showInstead(const model::PaintLayer& drawn);
    /// Shows the layer's own pixels again.
    void forgetLiveImage();
    /// Writes the live image into its layer with one history entry for `tool`, if anything was
    /// drawn. Of a drawing whose layer is gone, hidden or locked meanwhile, nothing remains.
    void finishRasterDrawing(model::PaintTool tool);
    /// The gesture is over, and what it drew stays to be changed.
    void keepAsDraft();
    /// Draws `stroke` over the layer as it was at the first sample.
    void drawInstead(const model::PaintStroke& stroke);
    /// Writes the live image into its layer with that history entry, if the layer is there, visible
    /// and not locked.
    void writeDraft(const QString& historyTitle, const QString& historySymbolName);
    /// Ends the gesture and forgets what it drew since it was last finished.
    void resetRasterDrawing();

private:
    /// Draws it on the live image, which stops being the base's pixels; where.
    QRect drawOnLiveImage(const model::PaintStroke& stroke);
    model::PaintStroke liveStroke(std::vector<model::CanvasPoint> points) const;
    void didDraw(const QRect& drawn);
    void dropSelection();
    void write(std::size_t layerIndex);
    model::PngBytes encodedDrawing() const;

    CanvasContext& m_context;
    std::optional<QUuid> m_activeDrawingLayerID;
    /// The layer as it was at the first sample.
    raster::RasterImage m_drawingBaseImage;
    raster::RasterImage m_liveDrawingImage;
    std::uint64_t m_liveDrawingRevision = 0;
    bool m_didRasterizeDrawing = false;
    std::optional<model::ColorValue> m_activeDrawingColor;
    DrawingButton m_button = DrawingButton::left;
    /// The layer's stored pixels at the first sample, the same where they can be read, and the
    /// pixels drawn on since.
    std::optional<model::PngBytes> m_layerBitmapPNGData;
    std::optional<model::PngBytes> m_originalBitmapPNGData;
    /// The encoded live image, where it is known.
    std::optional<model::PngBytes> m_encodedDrawing;
    QRect m_drawnRect;
    /// Of the layer that was drawn on last.
    raster::PictureVersions m_versions;
};

/// The layer's stored pixels, to encode changes of them from; none where they cannot be read.
std::optional<model::PngBytes> readableBitmap(const model::PaintLayer& layer);

} // namespace quillabrae::canvas
