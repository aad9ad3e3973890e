// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "raster/RasterImage.h"

#include <QRect>

namespace quillabrae::raster {

/// One edit of a layer's pixels: what they are on the canvas, and what they become. Storing costs
/// what the edit changed where the layer's own PNG is the canvas's.
class LayerRewrite {
public:
    /// The layer outlives this.
    LayerRewrite(model::PaintLayer& layer, double canvasWidth, double canvasHeight);

    /// The layer's pixels as `renderLayer` gives them.
    const RasterImage& image() const { return m_image; }

    /// Makes `edited`, which differs from `image()` only within `changed`, the layer's pixels.
    void store(const RasterImage& edited, const QRect& changed) const;

private:
    model::PaintLayer& m_layer;
    RasterImage m_image;
    bool m_isStoredWhole = false;
};

} // namespace quillabrae::raster
