// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing images onto surfaces.
#include "raster/BlendKernels.h"
#include "raster/DecodeCache.h"
#include "raster/Flatten.h"
#include "raster/LayerRasterService.h"
#include "raster/Stretch.h"
#include "raster/SurfaceSize.h"

namespace quillabrae::raster::LayerRasterService {
namespace {

/// `image` stretched to that size, of which `logicalSize` is the unrounded form.
RasterImage fitted(const RasterImage& image, QSize size, QSizeF logicalSize) {
    RasterImage result;
    if (QSize(image.width(), image.height()) == size) {
        result = image;
    } else {
        result = RasterImage::uninitialized(size.width(), size.height());
        copySamples(result, image, stretchSamples(image.width(), 0, size.width(), size.width()),
                    stretchSamples(image.height(), 0, size.height(), size.height()));
    }
    result.setLogicalSize(logicalSize);
    return result;
}

} // namespace

void drawImage(RasterImage& destination, const RasterImage& source, const QRect& target,
               double fraction) {
    drawSamples(destination, source,
                stretchSamples(source.width(), target.x(), target.width(), destination.width()),
                stretchSamples(source.height(), target.y(), target.height(), destination.height()),
                unitByte(fraction));
}

RasterImage renderLayer(const model::PaintLayer& layer, double canvasWidth, double canvasHeight) {
    if (!layer.bitmapPNGData) return transparentImage(canvasWidth, canvasHeight);
    return copyImage(decodedImage(*layer.bitmapPNGData), canvasWidth, canvasHeight);
}

void flatten(const model::PaintLayer& upper, model::PaintLayer& lower, double canvasWidth,
             double canvasHeight) {
    const RasterImage below = renderLayer(lower, canvasWidth, canvasHeight);
    const RasterImage above = renderLayer(upper, canvasWidth, canvasHeight);
    const RasterImage merged =
        flattenedImage({below, unitByte(lower.opacity)}, {above, unitByte(upper.opacity)});
    lower.bitmapPNGData = pngData(merged);
    lower.opacity = 1.0;
}

void bakeImage(const model::PaintImage& image, model::PaintLayer& layer, double canvasWidth,
               double canvasHeight) {
    RasterImage canvas = renderLayer(layer, canvasWidth, canvasHeight);
    const RasterImage baked = decodedImage(image.pngData);
    drawSamples(canvas, baked, stretchSamples(baked.width(), image.x, image.width, canvas.width()),
                stretchSamples(baked.height(), image.y, image.height, canvas.height()), 255);
    layer.bitmapPNGData = pngData(canvas);
}

RasterImage copyImage(const RasterImage& image, double width, double height) {
    const std::optional<QSize> size = surfaceSize(width, height);
    if (!size) return {};
    if (image.isNull()) return transparentImage(width, height);
    return fitted(image, *size, QSizeF(width, height));
}

RasterImage resizedCopy(const RasterImage& image, double width, double height) {
    return copyImage(image, width, height);
}

} // namespace quillabrae::raster::LayerRasterService
