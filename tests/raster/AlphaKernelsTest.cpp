// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"
#include "raster/PngFixtures.h"

#include <gtest/gtest.h>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

std::vector<std::uint8_t> everyPair(bool withExcess) {
    std::vector<std::uint8_t> pixels;
    for (unsigned alpha = 0; alpha < 256; ++alpha)
        for (unsigned color = 0; color <= (withExcess ? 255 : alpha); ++color)
            for (const unsigned component : {color, alpha - std::min(color, alpha), 0U, alpha})
                pixels.push_back(static_cast<std::uint8_t>(component));
    return pixels;
}

TEST(AlphaKernels, UnpremultiplyingRoundsAsDefined) {
    const std::vector<std::uint8_t> pixels = everyPair(false);
    const int count = static_cast<int>(pixels.size() / 4);
    RasterImage image = RasterImage::uninitialized(count, 1);
    std::ranges::copy(pixels, image.mutableRow(0));
    std::vector<std::uint8_t> straight(pixels.size());
    unpremultiplyPixels(pixels.data(), straight.data(), pixels.size() / 4);
    EXPECT_EQ(straight, straightPixels(image));
}

TEST(AlphaKernels, PremultiplyingRoundsAsDefined) {
    const std::vector<std::uint8_t> straight = everyPair(true);
    const int count = static_cast<int>(straight.size() / 4);
    RasterImage image = RasterImage::uninitialized(count, 1);
    premultiplyPixels(straight.data(), image.mutableRow(0), straight.size() / 4);
    EXPECT_TRUE(image == premultipliedImage(count, 1, straight));
}

TEST(AlphaKernels, OneUndoesTheOtherForEveryPairInPlaceToo) {
    const std::vector<std::uint8_t> pixels = everyPair(false);
    std::vector<std::uint8_t> turned = pixels;
    unpremultiplyPixels(turned.data(), turned.data(), turned.size() / 4);
    premultiplyPixels(turned.data(), turned.data(), turned.size() / 4);
    EXPECT_EQ(turned, pixels);
}

TEST(AlphaKernels, AComponentAboveItsAlphaIsFoundAnywhere) {
    const RasterImage image = randomImage(333, 1, 9);
    const std::vector<std::uint8_t> pixels(image.bytes().begin(), image.bytes().end());
    EXPECT_TRUE(isPremultiplied(pixels.data(), 333));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (i % 4 == 3 || pixels[i / 4 * 4 + 3] == 255) continue;
        std::vector<std::uint8_t> spoilt = pixels;
        spoilt[i] = static_cast<std::uint8_t>(pixels[i / 4 * 4 + 3] + 1);
        EXPECT_FALSE(isPremultiplied(spoilt.data(), 333)) << "byte " << i;
    }
}

TEST(AlphaKernels, RunsOfOneKindAreToldFromOthers) {
    std::vector<std::uint8_t> pixels(std::size_t{4} * 300, 0);
    EXPECT_TRUE(isAllZero(pixels.data(), pixels.size()));
    EXPECT_TRUE(isAlphaTrivial(pixels.data(), 300));
    pixels[1199] = 1;
    EXPECT_FALSE(isAllZero(pixels.data(), pixels.size()));
    EXPECT_FALSE(isAlphaTrivial(pixels.data(), 300));
    for (std::size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 255;
    EXPECT_TRUE(isAlphaTrivial(pixels.data(), 300));
    pixels[3] = 254;
    EXPECT_FALSE(isAlphaTrivial(pixels.data(), 300));
}

} // namespace
} // namespace quillabrae::raster
