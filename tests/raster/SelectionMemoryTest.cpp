// SPDX-License-Identifier: GPL-3.0-or-later
// Selections take, beside what they are given, their result and no more than one canvas to work in.
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceMasks.h"
#include "raster/LayerRasterServiceRegions.h"
#include "raster/PixelMemory.h"
#include "raster/RasterFixtures.h"
#include "support/PeakMemory.h"
#include "support/Sanitizer.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>

namespace quillabrae::raster {
namespace {

constexpr int side = 2048;
constexpr qint64 canvas = qint64{4} * side * side;
/// The bits of a search, compressed bands, what a thread works with.
constexpr qint64 smallThings = 4 << 20;
constexpr Pixel ink{200, 0, 0, 255};

class SelectionMemory : public testing::Test {
protected:
    void SetUp() override {
        if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
        // Each thread keeps the encoder that its first band makes, for the life of the process.
        LayerRasterService::ellipseSelectionMask(1024, 1024);
    }

    /// The growth beyond what is held when the call begins.
    template <typename Call>
    static qint64 growthOf(Call call) {
        releaseKeptPixelMemory();
        const tests::PeakMemory memory;
        [[maybe_unused]] const auto kept = call();
        return memory.growth();
    }
};

/// One pixel wide, and joined along the last row.
RasterImage stripes() {
    RasterImage image = filledImage(side, side, ink);
    for (int y = 0; y < side - 1; ++y)
        for (int x = 1; x < side; x += 2) setPixel(image, x, y, {});
    return image;
}

RasterImage sieve() {
    std::mt19937 random(61);
    RasterImage image = filledImage(side, side, ink);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            if (random() % 10 < 3 && x + y > 0) setPixel(image, x, y, {});
    return image;
}

TEST_F(SelectionMemory, OfTheWandIsItsMaskAndLessThanACanvas) {
    for (const RasterImage& image : {stripes(), sieve(), filledImage(side, side, ink)}) {
        const model::PaintLayer layer = layerOf(image);
        EXPECT_LT(growthOf([&] {
                      return LayerRasterService::magicWandSelection(layer, side, side, {0, 0}, 5);
                  }),
                  2 * canvas + smallThings);
    }
}

TEST_F(SelectionMemory, OfTheBucketIsTheNewPixelsAndLessThanACanvas) {
    for (const RasterImage& image : {stripes(), sieve(), filledImage(side, side, ink)}) {
        const model::PaintLayer layer = layerOf(image);
        model::PaintLayer filled = layer;
        EXPECT_LT(growthOf([&] {
                      return LayerRasterService::fillSimilarPixels(filled, side, side, {0, 0},
                                                                   {0, 1, 0, 1}, 5);
                  }),
                  2 * canvas + smallThings);
    }
}

TEST_F(SelectionMemory, OfMasksIsOneCanvasAlone) {
    const model::PixelSelection whole{0, 0, side, side, std::nullopt};
    const model::PixelSelection hole{100, 100, 500, 500, std::nullopt};
    const qint64 ofEllipse =
        growthOf([] { return LayerRasterService::ellipseSelectionMask(side, side); });
    EXPECT_GT(ofEllipse, canvas / 2);
    EXPECT_LT(ofEllipse, canvas + smallThings);
    EXPECT_LT(growthOf([&] {
                  return LayerRasterService::combinedSelection(
                      whole, hole, model::SelectionCombineOperation::subtract);
              }),
              canvas + smallThings);
    // Refused for its size before anything is allocated for it.
    EXPECT_LT(growthOf([] { return LayerRasterService::ellipseSelectionMask(32'768, 32'768); }),
              smallThings);
    EXPECT_LT(growthOf([] {
                  return LayerRasterService::magicWandSelection({}, 32'768, 32'768, {0, 0}, 5);
              }),
              smallThings);
}

} // namespace
} // namespace quillabrae::raster
