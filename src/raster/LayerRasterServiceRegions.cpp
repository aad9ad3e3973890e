// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterServiceRegions.h"

#include "raster/AlphaKernels.h"
#include "raster/AlphaMask.h"
#include "raster/BlendKernels.h"
#include "raster/LayerRasterService.h"
#include "raster/SimilarRegion.h"
#include "raster/SurfaceSize.h"

#include <QPoint>
#include <QRect>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace quillabrae::raster::LayerRasterService {
namespace {

constexpr double wholeCanvas = 100.0;

int pixelIndex(double coordinate, int count) {
    if (!(coordinate > 0.0)) return 0;
    return static_cast<int>(std::min(std::floor(coordinate), count - 1.0));
}

QPoint pixelAt(const RasterImage& image, model::CanvasPoint point) {
    return {pixelIndex(point.x, image.width()), pixelIndex(point.y, image.height())};
}

/// Lays the colour over the region's pixels.
void fillRegion(RasterImage& image, const SimilarRegion& region, PixelColor color) {
    constexpr int rowsAtOnce = 32;
    const QRect bounds = region.bounds();
    std::uint8_t* const pixels = image.mutableBytes().data();
    const std::size_t stride = image.stride();
    parallelForRowBands(bounds.height(), rowsAtOnce, [&](int first, int last) {
        std::vector<std::uint8_t> alpha(static_cast<std::size_t>(bounds.width()));
        for (int y = bounds.top() + first; y < bounds.top() + last; ++y) {
            region.fillRow(bounds.left(), y, alpha);
            if (color.alpha != 255) std::ranges::replace(alpha, std::uint8_t{255}, color.alpha);
            sourceOverColor(pixels + static_cast<std::size_t>(y) * stride +
                                4 * static_cast<std::size_t>(bounds.left()),
                            alpha.data(), alpha.size(), color);
        }
    });
}

} // namespace

std::optional<model::PixelSelection> magicWandSelection(const model::PaintLayer& layer,
                                                        double canvasWidth, double canvasHeight,
                                                        model::CanvasPoint point,
                                                        double matchPercentage) {
    if (!surfaceSize(canvasWidth, canvasHeight)) return std::nullopt;
    if (matchPercentage >= wholeCanvas)
        return model::PixelSelection{0.0, 0.0, canvasWidth, canvasHeight, std::nullopt};
    const RasterImage image = renderLayer(layer, canvasWidth, canvasHeight);
    if (image.isNull()) return std::nullopt;
    const SimilarRegion region(image, pixelAt(image, point), matchPercentage);
    const QRect bounds = region.bounds();
    return model::PixelSelection{static_cast<double>(bounds.x()), static_cast<double>(bounds.y()),
                                 static_cast<double>(bounds.width()),
                                 static_cast<double>(bounds.height()),
                                 alphaMaskPNGData(bounds.size(), [&](int, int) {
                                     return [&](int y, std::span<std::uint8_t> alpha) {
                                         region.fillRow(bounds.x(), bounds.y() + y, alpha);
                                     };
                                 })};
}

bool fillSimilarPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                       model::CanvasPoint point, const model::ColorValue& color,
                       double matchPercentage) {
    if (!(canvasWidth > 0.0 && canvasHeight > 0.0)) return false;
    RasterImage stored;
    if (layer.bitmapPNGData) stored = decodedImage(*layer.bitmapPNGData);
    RasterImage image = copyImage(stored, canvasWidth, canvasHeight);
    if (image.isNull()) return false;
    const bool holdsStoredPixels = image.sharesPixelsWith(stored);
    stored = {};
    const PixelColor fill = PixelColor::of(color);
    RowRange changedRows{0, image.height()};
    if (matchPercentage >= wholeCanvas) {
        sourceOverColor(image.mutableBytes().data(), image.byteCount() / 4, fill);
    } else {
        const SimilarRegion region(image, pixelAt(image, point), matchPercentage);
        fillRegion(image, region, fill);
        changedRows = {region.bounds().top(), region.bounds().bottom() + 1};
    }
    layer.bitmapPNGData =
        holdsStoredPixels ? encodedImage(image, *layer.bitmapPNGData, changedRows) : pngData(image);
    return true;
}

std::optional<model::ColorValue> color(const model::PaintLayer& layer, double canvasWidth,
                                       double canvasHeight, model::CanvasPoint point) {
    const RasterImage image = renderLayer(layer, canvasWidth, canvasHeight);
    if (image.isNull()) return std::nullopt;
    const QPoint at = pixelAt(image, point);
    std::array<std::uint8_t, 4> straight{};
    unpremultiplyPixels(image.row(at.y()) + 4 * static_cast<std::size_t>(at.x()), straight.data(),
                        1);
    if (straight[3] == 0) return std::nullopt;
    return model::ColorValue{straight[0] / 255.0, straight[1] / 255.0, straight[2] / 255.0,
                             straight[3] / 255.0};
}

} // namespace quillabrae::raster::LayerRasterService
