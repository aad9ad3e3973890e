// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/PaintLayer.h"
#include "model/PngBytes.h"

#include <QUuid>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class LiveDrawing;

/// Filling a region of similar colour. The latest fill stays adjustable: a change of the match
/// percentage does it again from the pixels that were under it.
class BucketGesture {
public:
    BucketGesture(CanvasContext& context, LiveDrawing& drawing)
        : m_context(context), m_drawing(drawing) {}

    /// Fills on the live image from `point` on; false when there is nothing to fill.
    bool fillBucket(model::CanvasPoint point, const model::PaintLayer& layer);
    /// Does the latest fill again with the present percentage, without an entry in the history.
    void refreshPaintBucketFillForMatchChange();
    void forgetSeed() { m_paintBucketSeed.reset(); }

private:
    struct PaintBucketSeed {
        QUuid layerID;
        model::CanvasPoint point;
        model::ColorValue color;
        /// The layer as it was before the fill.
        std::optional<model::PngBytes> originalBitmapPNGData;
    };

    bool fill(model::PaintLayer& layer, const PaintBucketSeed& seed) const;

    CanvasContext& m_context;
    LiveDrawing& m_drawing;
    std::optional<PaintBucketSeed> m_paintBucketSeed;
};

} // namespace quillabrae::canvas
