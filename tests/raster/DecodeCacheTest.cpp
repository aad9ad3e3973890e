// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"
#include "raster/KeptMemory.h"
#include "raster/PngFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

constexpr std::size_t plenty = std::size_t{64} * 1024 * 1024;

class DecodeCache : public testing::Test {
protected:
    DecodeCache() {
        setDecodeCacheBudget(plenty);
        clearDecodeCache();
    }
    ~DecodeCache() override { clearDecodeCache(); }
};

TEST_F(DecodeCache, TheSameBytesShareOneDecoding) {
    const model::PngBytes bytes = encodePng(randomImage(60, 40, 1));
    const RasterImage first = decodedImage(bytes);
    EXPECT_TRUE(first.sharesPixelsWith(decodedImage(bytes)));
    EXPECT_EQ(decodeCacheSize(), first.byteCount());
}

TEST_F(DecodeCache, AnEncodedImageIsItsOwnDecoding) {
    const RasterImage image = randomImage(60, 40, 2);
    const model::PngBytes bytes = encodedImage(image);
    EXPECT_TRUE(decodedImage(bytes).sharesPixelsWith(image));
    const model::PngBytes again = encodedImage(image, bytes, {0, 10});
    EXPECT_EQ(again, bytes);
    EXPECT_TRUE(decodedImage(again).sharesPixelsWith(image));
}

TEST_F(DecodeCache, ReadOnlyItGivesWhatItHoldsAndTakesNothingIn) {
    const RasterImage held = randomImage(60, 40, 3);
    const model::PngBytes heldBytes = encodedImage(held);
    const RasterImage image = randomImage(60, 40, 4);
    {
        const DecodeCacheReadOnly readOnly;
        EXPECT_TRUE(decodedImage(heldBytes).sharesPixelsWith(held));
        const model::PngBytes bytes = encodedImage(image);
        EXPECT_FALSE(decodedImage(bytes).sharesPixelsWith(image));
        EXPECT_TRUE(decodedImage(bytes) == image);
        EXPECT_EQ(decodeCacheSize(), held.byteCount());
    }
    const model::PngBytes bytes = encodedImage(image);
    EXPECT_TRUE(decodedImage(bytes).sharesPixelsWith(image));
}

TEST_F(DecodeCache, GivesThePixelsAndBytesThatTheCodecAloneGives) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        RasterImage image = randomImage(90, 300, seed);
        const model::PngBytes bytes = encodedImage(image);
        EXPECT_EQ(bytes, encodePng(image));
        EXPECT_TRUE(decodedImage(bytes) == decodePng(bytes));
        std::memcpy(image.mutableRow(7), randomImage(90, 1, seed + 100).row(0), image.stride());
        const model::PngBytes next = encodedImage(image, bytes, {7, 8});
        EXPECT_EQ(next, encodePng(image));
        EXPECT_TRUE(decodedImage(next) == decodePng(next));
        EXPECT_TRUE(decodedImage(bytes) == decodePng(bytes));
    }
}

TEST_F(DecodeCache, PixelsThatEncodingChangesAreNotTakenForTheirDecoding) {
    RasterImage image(8, 8);
    image.mutableRow(2)[4] = 200;
    image.mutableRow(2)[7] = 100;
    const model::PngBytes bytes = encodedImage(image);
    const RasterImage cached = decodedImage(bytes);
    EXPECT_TRUE(cached == decodePng(bytes));
    EXPECT_EQ(cached.row(2)[4], 100);
}

TEST_F(DecodeCache, PixelsThatEncodingChangesAreFoundByWayOfAnEarlierEncoding) {
    const auto excess = [](RasterImage& image, int y) {
        image.mutableRow(y)[4] = 200;
        image.mutableRow(y)[7] = 100;
    };
    // In a changed row; in an unchanged one, of which the decoded pixels are known to be others.
    for (const int row : {6, 2}) {
        RasterImage image(8, 8);
        if (row == 2) excess(image, row);
        const model::PngBytes bytes = encodedImage(image);
        if (row == 6) excess(image, row);
        const model::PngBytes next = encodedImage(image, bytes, {5, 8});
        EXPECT_TRUE(decodedImage(next) == decodePng(next)) << row;
        EXPECT_EQ(decodedImage(next).row(row)[4], 100);
    }
}

TEST_F(DecodeCache, TheLogicalSizeIsThatOfTheBytes) {
    RasterImage image = randomImage(10, 10, 3);
    image.setLogicalSize(QSizeF(9.6, 10.2));
    EXPECT_EQ(decodedImage(encodedImage(image)).logicalSize(), QSizeF(10, 10));
}

TEST_F(DecodeCache, WritingToADecodedImageLeavesTheNextOneAsItWas) {
    const RasterImage image = randomImage(20, 20, 4);
    const model::PngBytes bytes = encodedImage(image);
    RasterImage mine = decodedImage(bytes);
    std::memset(mine.mutableBytes().data(), 0, mine.byteCount());
    EXPECT_TRUE(decodedImage(bytes) == randomImage(20, 20, 4));
    EXPECT_TRUE(image == randomImage(20, 20, 4));
}

TEST_F(DecodeCache, KeepsTheLastUsedWithinItsBudget) {
    const RasterImage image = randomImage(50, 50, 5);
    setDecodeCacheBudget(3 * image.byteCount());
    std::vector<model::PngBytes> all;
    for (unsigned i = 0; i < 4; ++i) {
        all.push_back(encodePng(randomImage(50, 50, 10 + i)));
        (void)decodedImage(all.back());
        const RasterImage first = decodedImage(all.front());
        EXPECT_TRUE(first.sharesPixelsWith(decodedImage(all.front())));
        EXPECT_LE(decodeCacheSize(), 3 * image.byteCount());
    }
    const RasterImage kept = decodedImage(all.front());
    clearDecodeCache();
    EXPECT_EQ(decodeCacheSize(), 0U);
    EXPECT_FALSE(kept.sharesPixelsWith(decodedImage(all.front())));
}

TEST_F(DecodeCache, AnImageBeyondTheBudgetIsDecodedButNotKept) {
    setDecodeCacheBudget(100);
    const RasterImage image = randomImage(50, 50, 6);
    EXPECT_TRUE(decodedImage(encodedImage(image)) == image);
    EXPECT_EQ(decodeCacheSize(), 0U);
}

TEST_F(DecodeCache, WhatDoesNotFitPushesOutNothing) {
    // Large enough to be cropped, and nearly empty.
    RasterImage large(2048, 2048);
    std::memset(large.mutableRow(700) + 400, 255, 40);
    const model::PngBytes bytes = encodePng(large);
    const model::PngBytes other = encodePng(randomImage(50, 50, 8));
    setDecodeCacheBudget(std::size_t{4} * 1024 * 1024);
    decodedImage(other);
    const CroppedImage cropped = decodedCrop(bytes);
    ASSERT_FALSE(cropped.isWhole());
    const std::size_t size = decodeCacheSize();
    EXPECT_TRUE(decodedImage(bytes) == large);
    EXPECT_TRUE(isRemembered(other));
    EXPECT_TRUE(decodedCrop(bytes).image.sharesPixelsWith(cropped.image));
    EXPECT_EQ(decodeCacheSize(), size);
}

TEST_F(DecodeCache, WhatDoesNotFitIntoAPassPushesOutNothing) {
    RasterImage large(2048, 2048);
    std::memset(large.mutableRow(700) + 400, 255, 40);
    const model::PngBytes bytes = encodePng(large);
    const model::PngBytes older = encodePng(randomImage(50, 50, 8));
    const model::PngBytes other = encodePng(randomImage(500, 500, 9));
    setDecodeCacheBudget(large.byteCount() + std::size_t{500} * 500);
    decodedImage(older);
    decodedCrop(bytes);
    const std::size_t before = decodeCacheSize();
    const DecodeCachePass pass;
    const RasterImage first = decodedImage(other);
    decodedImage(bytes);
    EXPECT_TRUE(isRemembered(older));
    EXPECT_TRUE(isRemembered(bytes));
    EXPECT_EQ(decodeCacheSize(), before + first.byteCount());
}

TEST_F(DecodeCache, UnusedMemoryThatIsReturnedIsThatOfPicturesNobodyHolds) {
    if (!isMemoryKept()) GTEST_SKIP() << "freed pixel memory is not kept here";
    RasterImage gone(1024, 1024);
    RasterImage freed(1024, 768);
    RasterImage held(1024, 1024);
    for (RasterImage* const image : {&gone, &freed, &held})
        std::memset(image->mutableBytes().data(), 255, image->byteCount());
    const model::PngBytes heldBytes = encodedImage(held);
    model::PngBytes goneBytes = encodedImage(gone);
    const std::vector<const std::uint8_t*> places{gone.row(0), freed.row(0), held.row(0)};
    gone = freed = held = {};
    goneBytes = {};
    EXPECT_TRUE(std::ranges::all_of(places, isThere));
    returnUnusedMemory();
    EXPECT_FALSE(isThere(places[0]));
    EXPECT_FALSE(isThere(places[1]));
    EXPECT_EQ(decodedImage(heldBytes).row(0), places[2]);
}

TEST_F(DecodeCache, ForgetsImagesWhoseBytesAreGone) {
    model::PngBytes bytes = encodedImage(randomImage(50, 50, 7));
    EXPECT_GT(decodeCacheSize(), 0U);
    bytes = {};
    EXPECT_EQ(decodeCacheSize(), 0U);
}

TEST_F(DecodeCache, NoBytesAndBadBytesHaveNoImage) {
    EXPECT_TRUE(decodedImage({}).isNull());
    const model::PngBytes bad(QByteArray("no PNG at all"));
    EXPECT_TRUE(decodedImage(bad).isNull());
    EXPECT_TRUE(decodedImage(bad).isNull());
    EXPECT_TRUE(encodedImage(RasterImage()).isEmpty());
}

TEST_F(DecodeCache, ServesManyThreads) {
    std::vector<model::PngBytes> all;
    for (unsigned i = 0; i < 6; ++i) all.push_back(encodePng(randomImage(40, 40, 20 + i)));
    setDecodeCacheBudget(std::size_t{3} * 40 * 40 * 4);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (unsigned round = 0; round < 200; ++round) {
                const unsigned i = (t + round * 5) % 6;
                RasterImage image = decodedImage(all[i]);
                if (!(image == randomImage(40, 40, 20 + i))) ++wrong;
                image.mutableRow(0)[0] ^= 0xff;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
} // namespace quillabrae::raster
