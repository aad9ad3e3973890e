// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/Parallel.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace quillabrae::effects {

using raster::Pixel;
using raster::pixelAt;
using raster::RasterImage;

/// Red, green and blue of a premultiplied pixel.
using Components = std::array<double, 3>;

inline Components componentsOf(Pixel pixel) {
    return {double(pixel.red), double(pixel.green), double(pixel.blue)};
}

inline int nearest(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

inline Pixel pixelOf(Components color, int alpha) {
    return {nearest(color[0]), nearest(color[1]), nearest(color[2]), alpha};
}

/// The picture whose every pixel the slow twin of an effect makes of the one in its place.
template <typename Twin>
RasterImage slowly(const RasterImage& image, Twin&& twin) {
    RasterImage result(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            raster::setPixel(result, x, y, twin(pixelAt(image, x, y)));
    return result;
}

/// What holds of every effect but where it says otherwise: sizes, alpha, no colour beyond alpha,
/// and the same result on one thread and on several.
template <typename Effect>
void expectAlphaKept(const Effect& effect) {
    std::mt19937 random(11);
    const RasterImage image = raster::randomImage(61, 37, random);
    const RasterImage result = applied(effect, image);
    ASSERT_EQ(result.width(), image.width());
    ASSERT_EQ(result.height(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const Pixel pixel = pixelAt(result, x, y);
            ASSERT_EQ(pixel.alpha, pixelAt(image, x, y).alpha);
            ASSERT_LE(std::max({pixel.red, pixel.green, pixel.blue}), pixel.alpha);
        }
    }
}

template <typename Effect>
void expectSameOnOneThread(const Effect& effect) {
    std::mt19937 random(12);
    // Several bands, the last of them short.
    const RasterImage image = raster::randomImage(1021, 163, random);
    const RasterImage together = applied(effect, image);
    const raster::ParallelThreadLimit limit(1);
    EXPECT_TRUE(together == applied(effect, image));
}

} // namespace quillabrae::effects
