// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/KeptMemory.h"
#include "raster/PictureVersions.h"
#include "raster/PixelMemory.h"
#include "raster/RasterFixtures.h"
#include "support/MemoryRefusal.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>

namespace quillabrae::raster {
namespace {

constexpr int width = 1024;
constexpr int height = 768;

class PictureVersions : public testing::Test {
protected:
    PictureVersions() { releaseKeptPixelMemory(); }
    ~PictureVersions() override { releaseKeptPixelMemory(); }

    void fill(RasterImage& image, const QRect& rect) {
        const Pixel ink{static_cast<std::uint8_t>(random()), 0, 9, 255};
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            for (int x = rect.left(); x <= rect.right(); ++x) setPixel(image, x, y, ink);
    }

    QRect anyRect() {
        const int x = std::uniform_int_distribution(0, width - 100)(random);
        const int y = std::uniform_int_distribution(0, height - 100)(random);
        return {x, y, std::uniform_int_distribution(1, 100)(random),
                std::uniform_int_distribution(1, 100)(random)};
    }

    /// The picture after another drawing on it.
    RasterImage drawn(const RasterImage& before, const QRect& rect) {
        RasterImage after = versions.drawable(before);
        EXPECT_TRUE(after == before);
        fill(after, rect);
        versions.add(before, after, rect);
        return after;
    }

    raster::PictureVersions versions;
    std::mt19937 random{5};
};

TEST_F(PictureVersions, AreWhatTheyWereHoweverManyAreHeldElsewhere) {
    for (const std::size_t held : {1U, 2U, 5U}) {
        RasterImage twin = filledImage(width, height, {1, 2, 3, 255});
        std::deque<RasterImage> latest{twin};
        for (int drawing = 0; drawing < 60; ++drawing) {
            const QRect rect = anyRect();
            const auto seed = random();
            random.seed(seed);
            RasterImage after = drawn(latest.back(), rect);
            random.seed(seed);
            fill(twin, rect);
            ASSERT_TRUE(after == twin) << drawing;
            latest.push_back(after);
            if (latest.size() > held) latest.pop_front();
            // Now and then an undo.
            if (held > 1 && drawing % 9 == 8) {
                latest.pop_back();
                twin = latest.back();
            }
        }
    }
}

TEST_F(PictureVersions, TheOneThatNobodyHoldsIsDrawnOn) {
    if (!isMemoryKept()) GTEST_SKIP() << "freed pixel memory is not kept here";
    RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    RasterImage second = drawn(first, {10, 10, 50, 50});
    const std::uint8_t* const place = first.row(0);
    first = {};
    const RasterImage third = drawn(second, {300, 20, 5, 500});
    EXPECT_EQ(third.row(0), place);
}

TEST_F(PictureVersions, OneThatIsHeldIsLeftAlone) {
    const RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    const RasterImage second = drawn(first, {10, 10, 50, 50});
    EXPECT_TRUE(versions.drawable(second).sharesPixelsWith(second));
}

TEST_F(PictureVersions, OneThatWasWrittenMeanwhileIsNotTakenForWhatItWas) {
    RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    const RasterImage second = drawn(first, {10, 10, 50, 50});
    fill(first, {600, 600, 9, 9});
    first = {};
    EXPECT_TRUE(versions.drawable(second).sharesPixelsWith(second));
}

TEST_F(PictureVersions, AnotherPictureHasNone) {
    RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    const RasterImage second = drawn(first, {10, 10, 50, 50});
    first = {};
    const RasterImage other = filledImage(width, height, {1, 2, 3, 255});
    EXPECT_TRUE(versions.drawable(other).sharesPixelsWith(other));
    RasterImage written = second;
    fill(written, {0, 0, 1, 1});
    EXPECT_TRUE(versions.drawable(written).sharesPixelsWith(written));
}

TEST_F(PictureVersions, WhereMostHasChangedACopyIsAsGood) {
    RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    const RasterImage second = drawn(first, {0, 0, width, height / 2 + 1});
    first = {};
    EXPECT_TRUE(versions.drawable(second).sharesPixelsWith(second));
}

TEST_F(PictureVersions, AreForgottenWithTheMemoryThatIsKept) {
    RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    const RasterImage second = drawn(first, {10, 10, 50, 50});
    first = {};
    releaseKeptPixelMemory();
    EXPECT_TRUE(versions.drawable(second).sharesPixelsWith(second));
}

TEST_F(PictureVersions, OneThatMemoryEndsInIsThereTheNextTime) {
    if (!isMemoryKept()) GTEST_SKIP() << "freed pixel memory is not kept here";
    if (!tests::MemoryRefusal::isAvailable()) GTEST_SKIP() << "another allocator is in use";
    RasterImage first = filledImage(width, height, {1, 2, 3, 255});
    RasterImage second = drawn(first, {10, 10, 50, 50});
    const std::uint8_t* const place = first.row(0);
    const std::uint64_t contents = first.contentsID();
    first = {};
    {
        // Of what holds the pixels, not of the pixels.
        const tests::MemoryRefusal refusal(1, 1);
        EXPECT_TRUE(RasterImage::takenBack(contents, width, height).isNull());
        EXPECT_TRUE(refusal.hasHappened());
    }
    const RasterImage third = drawn(second, {300, 20, 5, 500});
    EXPECT_EQ(third.row(0), place);
}

} // namespace
} // namespace quillabrae::raster
