// SPDX-License-Identifier: GPL-3.0-or-later
// Making, measuring and encoding surfaces.
#include "raster/BlendKernels.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"
#include "raster/SurfaceSize.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {

std::optional<QSize> surfaceSize(double width, double height) {
    if (!std::isfinite(width) || !std::isfinite(height)) return std::nullopt;
    const double pixelWidth = std::max(std::round(width), 1.0);
    const double pixelHeight = std::max(std::round(height), 1.0);
    if (pixelWidth > maximumImageSide || pixelHeight > maximumImageSide) return std::nullopt;
    const QSize size(static_cast<int>(pixelWidth), static_cast<int>(pixelHeight));
    if (!isDecodableSize(size.width(), size.height())) return std::nullopt;
    return size;
}

} // namespace quillabrae::raster

namespace quillabrae::raster::LayerRasterService {
namespace {

/// One axis of a rect, its lesser end first.
struct Extent {
    double low;
    double high;

    static Extent of(double origin, double length) {
        return {std::min(origin, origin + length), std::max(origin, origin + length)};
    }
    Extent clippedTo(double limit) const { return {std::max(low, 0.0), std::min(high, limit)}; }
    /// Written so that an extent with a NaN has no length.
    bool hasLength() const { return low < high; }
};

} // namespace

RasterImage transparentImage(double width, double height) {
    const std::optional<QSize> size = surfaceSize(width, height);
    if (!size) return {};
    RasterImage image(size->width(), size->height());
    image.setLogicalSize(QSizeF(width, height));
    return image;
}

QRectF pixelAlignedRect(const QRectF& rect, double canvasWidth, double canvasHeight) {
    const Extent x = Extent::of(rect.x(), rect.width()).clippedTo(canvasWidth);
    const Extent y = Extent::of(rect.y(), rect.height()).clippedTo(canvasHeight);
    if (!x.hasLength() || !y.hasLength()) return {};
    const double left = std::max(std::floor(x.low), 0.0);
    const double top = std::max(std::floor(y.low), 0.0);
    const double right = std::min(std::ceil(x.high), canvasWidth);
    const double bottom = std::min(std::ceil(y.high), canvasHeight);
    return {left, top, std::max(right - left, 0.0), std::max(bottom - top, 0.0)};
}

std::optional<model::PngBytes> pngData(const RasterImage& image) {
    if (image.isNull()) return std::nullopt;
    model::PngBytes bytes = encodedImage(image);
    if (bytes.isEmpty()) return std::nullopt;
    return bytes;
}

std::optional<model::PngBytes> solidColorPNGData(double width, double height,
                                                 const model::ColorValue& color) {
    RasterImage image = transparentImage(width, height);
    sourceOverColor(image.mutableBytes().data(), image.byteCount() / 4, PixelColor::of(color));
    return pngData(image);
}

} // namespace quillabrae::raster::LayerRasterService
