// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BookLayers.h"

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster::book {
namespace {

using LayerRasterService::AlignHorizontalTarget;
using LayerRasterService::AlignVerticalTarget;

Pixel scaled(Pixel pixel, int factor) {
    return {bookProduct(pixel.red, factor), bookProduct(pixel.green, factor),
            bookProduct(pixel.blue, factor), bookProduct(pixel.alpha, factor)};
}

/// Calls `fn(x, y)` for each pixel.
template <typename Fn>
void forEachPixel(const RasterImage& image, Fn fn) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) fn(x, y);
}

/// Along one axis: the new position of a block between two edges.
double placeOf(int target, double blockStart, double blockLength, double start, double length) {
    if (target == 1) return start;
    if (target == 2) return std::round(start + length / 2 + blockLength * -0.5);
    if (target == 3) return start + length - blockLength;
    return blockStart;
}

} // namespace

QRect alignedRect(const Selection& selection, int width, int height) {
    if (!selection) return {0, 0, width, height};
    const double left = std::max(std::min(selection->x, selection->x + selection->width), 0.0);
    const double top = std::max(std::min(selection->y, selection->y + selection->height), 0.0);
    const double right =
        std::min(std::max(selection->x, selection->x + selection->width), double(width));
    const double bottom =
        std::min(std::max(selection->y, selection->y + selection->height), double(height));
    if (left >= right || top >= bottom) return {};
    const int x = static_cast<int>(std::floor(left)), y = static_cast<int>(std::floor(top));
    return {x, y, static_cast<int>(std::ceil(right)) - x, static_cast<int>(std::ceil(bottom)) - y};
}

int coverageAt(const Selection& selection, int width, int height, int x, int y) {
    const QRect rect = alignedRect(selection, width, height);
    if (!rect.contains(x, y)) return 0;
    if (!selection || !selection->maskPNGData) return 255;
    const RasterImage mask = decodedImage(*selection->maskPNGData);
    if (mask.isNull()) return 255;
    const int column = (2 * (x - rect.x()) + 1) * mask.width() / (2 * rect.width());
    const int row = (2 * (y - rect.y()) + 1) * mask.height() / (2 * rect.height());
    return pixelAt(mask, column, row).alpha;
}

RasterImage inverted(const RasterImage& image, const Selection& selection) {
    RasterImage result = image;
    forEachPixel(image, [&](int x, int y) {
        const int coverage = coverageAt(selection, image.width(), image.height(), x, y);
        const Pixel pixel = pixelAt(image, x, y);
        if (coverage == 0 || pixel.alpha == 0) return;
        const auto component = [&](int c) {
            const int opposite = std::max(pixel.alpha - c, 0);
            return static_cast<int>(std::round(c + coverage / 255.0 * (opposite - c)));
        };
        setPixel(
            result, x, y,
            {component(pixel.red), component(pixel.green), component(pixel.blue), pixel.alpha});
    });
    return result;
}

RasterImage cropped(const RasterImage& image, const model::PixelSelection& selection) {
    const QRect rect = alignedRect(selection, image.width(), image.height());
    if (rect.isEmpty()) return {};
    RasterImage result(rect.width(), rect.height());
    forEachPixel(result, [&](int x, int y) {
        const int coverage =
            coverageAt(selection, image.width(), image.height(), rect.x() + x, rect.y() + y);
        setPixel(result, x, y, scaled(pixelAt(image, rect.x() + x, rect.y() + y), coverage));
    });
    return result;
}

RasterImage cleared(const RasterImage& image, const Selection& selection) {
    RasterImage result = image;
    forEachPixel(image, [&](int x, int y) {
        const int coverage = coverageAt(selection, image.width(), image.height(), x, y);
        setPixel(result, x, y, scaled(pixelAt(image, x, y), 255 - coverage));
    });
    return result;
}

RasterImage flipped(const RasterImage& image, const Selection& selection, MirrorAxis axis) {
    const QRect rect = alignedRect(selection, image.width(), image.height());
    RasterImage result = cleared(image, selection);
    forEachPixel(image, [&](int x, int y) {
        if (!rect.contains(x, y)) return;
        const bool isHorizontal = axis == MirrorAxis::horizontal;
        const int fromX = isHorizontal ? rect.x() + rect.right() - x : x;
        const int fromY = isHorizontal ? y : rect.y() + rect.bottom() - y;
        const int coverage = coverageAt(selection, image.width(), image.height(), fromX, fromY);
        const Pixel lifted = scaled(pixelAt(image, fromX, fromY), coverage);
        setPixel(result, x, y, bookSourceOver(pixelAt(result, x, y), lifted, 255));
    });
    return result;
}

std::optional<RasterImage> aligned(const RasterImage& image, const QRectF& target,
                                   AlignHorizontalTarget horizontal, AlignVerticalTarget vertical) {
    const model::PixelSelection selection{
        target.x(), target.y(), target.width(), target.height(), {}};
    const QRect bounds = alignedRect(selection, image.width(), image.height());
    QRect block;
    forEachPixel(image, [&](int x, int y) {
        if (bounds.contains(x, y) && pixelAt(image, x, y).alpha > 0) block |= QRect(x, y, 1, 1);
    });
    if (block.isEmpty()) return std::nullopt;
    const int x = static_cast<int>(placeOf(static_cast<int>(horizontal), block.x(), block.width(),
                                           bounds.x(), bounds.width()));
    const int y = static_cast<int>(placeOf(static_cast<int>(vertical), block.y(), block.height(),
                                           bounds.y(), bounds.height()));
    if (x == block.x() && y == block.y()) return std::nullopt;
    RasterImage result = image;
    for (int row = 0; row < block.height(); ++row)
        for (int column = 0; column < block.width(); ++column)
            setPixel(result, block.x() + column, block.y() + row, {});
    for (int row = 0; row < block.height(); ++row)
        for (int column = 0; column < block.width(); ++column)
            setPixel(result, x + column, y + row,
                     bookSourceOver(pixelAt(result, x + column, y + row),
                                    pixelAt(image, block.x() + column, block.y() + row), 255));
    return result;
}

RasterImage composited(const RasterImage& image, const RasterImage& base, const QRectF& target) {
    RasterImage result = base;
    forEachPixel(base, [&](int x, int y) {
        const double column = (x + 0.5 - target.x()) * image.width() / target.width();
        const double row = (y + 0.5 - target.y()) * image.height() / target.height();
        if (!(column >= 0) || column >= image.width() || !(row >= 0) || row >= image.height())
            return;
        setPixel(
            result, x, y,
            bookSourceOver(pixelAt(base, x, y),
                           pixelAt(image, static_cast<int>(column), static_cast<int>(row)), 255));
    });
    return result;
}

model::PixelSelection randomSelection(int width, int height, std::mt19937& random) {
    const auto below = [&random](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    model::PixelSelection selection;
    selection.x = between(-0.6 * width, 1.1 * width);
    selection.y = between(-0.6 * height, 1.1 * height);
    selection.width = between(-0.3 * width, 1.6 * width);
    selection.height = between(-0.3 * height, 1.6 * height);
    if (below(2) == 0) {
        for (double* value : {&selection.x, &selection.y, &selection.width, &selection.height})
            *value = std::round(*value);
    }
    const QRect rect = alignedRect(selection, width, height);
    const QSize size =
        below(2) == 0 && !rect.isEmpty() ? rect.size() : QSize(1 + below(9), 1 + below(9));
    switch (below(4)) {
        case 0:
            break;
        case 1:
            selection.maskPNGData = model::PngBytes(QByteArrayLiteral("no mask"));
            break;
        default:
            selection.maskPNGData =
                LayerRasterService::pngData(randomImage(size.width(), size.height(), random));
    }
    return selection;
}

} // namespace quillabrae::raster::book
