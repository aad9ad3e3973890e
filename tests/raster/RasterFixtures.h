// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "raster/RasterImage.h"

#include <array>
#include <cstdint>
#include <ostream>
#include <random>

namespace quillabrae::raster {

/// A premultiplied pixel.
struct Pixel {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;

    friend bool operator==(const Pixel&, const Pixel&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Pixel& p) {
        return out << '(' << p.red << ' ' << p.green << ' ' << p.blue << ' ' << p.alpha << ')';
    }
};

Pixel pixelAt(const RasterImage& image, int x, int y);
void setPixel(RasterImage& image, int x, int y, Pixel pixel);

/// Random premultiplied pixels, a third each opaque, transparent and in between.
RasterImage randomImage(int width, int height, std::mt19937& random);
/// Every pixel the same.
RasterImage filledImage(int width, int height, Pixel pixel);
model::PaintLayer layerOf(const RasterImage& image, double opacity = 1.0);

/// round(x * y / 255), halves up, by the book.
int bookProduct(int x, int y);
/// Source-over of `source`, multiplied by `fraction` over 255.
Pixel bookSourceOver(Pixel under, Pixel source, int fraction);

/// The greatest difference of any two components; 256 for images of different sizes.
int greatestDifference(const RasterImage& a, const RasterImage& b);

} // namespace quillabrae::raster
