// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/RasterFixtures.h"

#include "raster/LayerRasterService.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quillabrae::raster {

Pixel pixelAt(const RasterImage& image, int x, int y) {
    const std::uint8_t* p = image.row(y) + 4 * static_cast<std::size_t>(x);
    return {p[0], p[1], p[2], p[3]};
}

void setPixel(RasterImage& image, int x, int y, Pixel pixel) {
    std::uint8_t* p = image.mutableRow(y) + 4 * static_cast<std::size_t>(x);
    p[0] = static_cast<std::uint8_t>(pixel.red);
    p[1] = static_cast<std::uint8_t>(pixel.green);
    p[2] = static_cast<std::uint8_t>(pixel.blue);
    p[3] = static_cast<std::uint8_t>(pixel.alpha);
}

RasterImage randomImage(int width, int height, std::mt19937& random) {
    RasterImage image(width, height);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int kind = byte(random) % 3;
            const int alpha = kind == 0 ? 255 : kind == 1 ? 0 : byte(random);
            std::uniform_int_distribution<int> component(0, alpha);
            setPixel(image, x, y, {component(random), component(random), component(random), alpha});
        }
    }
    return image;
}

RasterImage filledImage(int width, int height, Pixel pixel) {
    RasterImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) setPixel(image, x, y, pixel);
    return image;
}

model::PaintLayer layerOf(const RasterImage& image, double opacity) {
    model::PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.opacity = opacity;
    layer.bitmapPNGData = LayerRasterService::pngData(image);
    return layer;
}

int bookProduct(int x, int y) {
    return static_cast<int>(std::floor(x * y / 255.0 + 0.5));
}

Pixel bookSourceOver(Pixel under, Pixel source, int fraction) {
    const int alpha = bookProduct(source.alpha, fraction);
    const auto component = [&](int below, int above) {
        return bookProduct(above, fraction) + bookProduct(below, 255 - alpha);
    };
    return {component(under.red, source.red), component(under.green, source.green),
            component(under.blue, source.blue), component(under.alpha, source.alpha)};
}

int greatestDifference(const RasterImage& a, const RasterImage& b) {
    if (a.width() != b.width() || a.height() != b.height()) return 256;
    int greatest = 0;
    for (std::size_t i = 0; i < a.byteCount(); ++i)
        greatest = std::max(greatest, std::abs(int{a.bytes()[i]} - int{b.bytes()[i]}));
    return greatest;
}

} // namespace quillabrae::raster
