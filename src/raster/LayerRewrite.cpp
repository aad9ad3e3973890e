// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRewrite.h"

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <algorithm>

namespace quillabrae::raster {

LayerRewrite::LayerRewrite(model::PaintLayer& layer, double canvasWidth, double canvasHeight)
    : m_layer(layer) {
    if (!layer.bitmapPNGData) {
        m_image = LayerRasterService::transparentImage(canvasWidth, canvasHeight);
        return;
    }
    const RasterImage stored = decodedImage(*layer.bitmapPNGData);
    m_image = LayerRasterService::copyImage(stored, canvasWidth, canvasHeight);
    m_isStoredWhole = !stored.isNull() && stored.sharesPixelsWith(m_image);
}

void LayerRewrite::store(const RasterImage& edited, const QRect& changed) const {
    const int first = std::max(changed.top(), 0);
    const int last = std::min(changed.top() + changed.height(), edited.height());
    if (m_isStoredWhole && first < last)
        m_layer.bitmapPNGData = encodedImage(edited, *m_layer.bitmapPNGData, {first, last});
    else
        m_layer.bitmapPNGData = LayerRasterService::pngData(edited);
}

} // namespace quillabrae::raster
