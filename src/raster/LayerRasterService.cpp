// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterService.h"

#include "raster/DecodeCache.h"
#include "raster/PngCodec.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster::LayerRasterService {

RasterImage transparentImage(double width, double height) {
    if (!std::isfinite(width) || !std::isfinite(height)) return {};
    const double pixelWidth = std::max(std::round(width), 1.0);
    const double pixelHeight = std::max(std::round(height), 1.0);
    if (pixelWidth > maximumImageSide || pixelHeight > maximumImageSide) return {};
    RasterImage image(static_cast<int>(pixelWidth), static_cast<int>(pixelHeight));
    image.setLogicalSize(QSizeF(width, height));
    return image;
}

QRectF pixelAlignedRect(const QRectF& rect, double canvasWidth, double canvasHeight) {
    const QRectF clipped = rect.normalized().intersected(QRectF(0, 0, canvasWidth, canvasHeight));
    if (clipped.isEmpty()) return {};
    const double left = std::max(std::floor(clipped.left()), 0.0);
    const double top = std::max(std::floor(clipped.top()), 0.0);
    const double right = std::min(std::ceil(clipped.right()), canvasWidth);
    const double bottom = std::min(std::ceil(clipped.bottom()), canvasHeight);
    return {left, top, std::max(right - left, 0.0), std::max(bottom - top, 0.0)};
}

void drawImage(RasterImage& destination, const RasterImage& source, const QRect& target,
               double fraction) {
    if (source.isNull()) return;
    draw(destination, [&](QPainter& painter) {
        painter.setOpacity(fraction);
        painter.drawImage(target, source.toQImage());
    });
}

RasterImage renderLayer(const model::PaintLayer& layer, double canvasWidth, double canvasHeight) {
    RasterImage image = transparentImage(canvasWidth, canvasHeight);
    if (image.isNull() || !layer.bitmapPNGData) return image;
    RasterImage stored = decodedImage(*layer.bitmapPNGData);
    if (stored.width() == image.width() && stored.height() == image.height()) {
        stored.setLogicalSize(image.logicalSize());
        return stored;
    }
    drawImage(image, stored, QRect(0, 0, image.width(), image.height()));
    return image;
}

RasterImage copyImage(const RasterImage& image, double width, double height) {
    RasterImage copy = transparentImage(width, height);
    drawImage(copy, image, QRect(0, 0, copy.width(), copy.height()));
    return copy;
}

RasterImage resizedCopy(const RasterImage& image, double width, double height) {
    return copyImage(image, width, height);
}

std::optional<model::PngBytes> pngData(const RasterImage& image) {
    if (image.isNull()) return std::nullopt;
    return encodedImage(image);
}

} // namespace quillabrae::raster::LayerRasterService
