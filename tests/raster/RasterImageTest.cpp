// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/KeptMemory.h"
#include "raster/PixelMemory.h"
#include "raster/PngFixtures.h"
#include "raster/RasterImage.h"
#include "support/PeakMemory.h"
#include "support/Sanitizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

TEST(RasterImage, AFreshImageIsClearWhateverItsMemoryHeldBefore) {
    for (const int side : {1, 50, 900, 1200}) {
        {
            RasterImage used = RasterImage::uninitialized(side, side);
            std::memset(used.mutableBytes().data(), 0xee, used.byteCount());
        }
        const RasterImage fresh(side, side);
        ASSERT_FALSE(fresh.isNull());
        for (const std::uint8_t byte : fresh.bytes()) ASSERT_EQ(byte, 0);
    }
}

TEST(RasterImage, CopiesShareTheirPixelsUntilOneIsWritten) {
    for (const int side : {20, 1000}) {
        RasterImage image = randomImage(side, side, 1);
        const RasterImage copy = image;
        EXPECT_TRUE(image.sharesPixelsWith(copy));
        image.mutableRow(3)[0] ^= 1;
        EXPECT_FALSE(image.sharesPixelsWith(copy));
        EXPECT_FALSE(image == copy);
        image.mutableRow(3)[0] ^= 1;
        EXPECT_TRUE(image == copy);
    }
}

TEST(RasterImage, SidesBelowOneGiveANullImage) {
    EXPECT_TRUE(RasterImage(0, 5).isNull());
    EXPECT_TRUE(RasterImage::uninitialized(5, -1).isNull());
    EXPECT_TRUE(RasterImage(0, 5).bytes().empty());
}

TEST(RasterImage, TakesAPictureOfAnyFormatOver) {
    QImage picture(7, 5, QImage::Format_RGB32);
    picture.fill(QColor(10, 20, 30));
    const uchar* memory = picture.constBits();
    const RasterImage image = RasterImage::fromQImage(std::move(picture));
    ASSERT_EQ(image.width(), 7);
    ASSERT_EQ(image.height(), 5);
    EXPECT_EQ(image.bytes().data(), memory);
    EXPECT_EQ(image.row(4)[4 * 6 + 2], 30);
    EXPECT_EQ(image.row(4)[4 * 6 + 3], 255);

    QImage gray(3, 3, QImage::Format_Grayscale8);
    gray.fill(77);
    EXPECT_EQ(RasterImage::fromQImage(std::move(gray)).row(2)[8], 77);
    EXPECT_TRUE(RasterImage::fromQImage(QImage()).isNull());
}

TEST(RasterImage, APictureHeldElsewhereIsNotWrittenThrough) {
    QImage held(4, 4, QImage::Format_RGBA8888_Premultiplied);
    held.fill(Qt::white);
    RasterImage image = RasterImage::fromQImage(QImage(held));
    image.mutableRow(0)[0] = 1;
    EXPECT_EQ(held.constBits()[0], 255);
}

TEST(RasterImage, AQImageOverThePixelsKeepsThemAlive) {
    QImage view;
    {
        const RasterImage image = randomImage(900, 900, 2);
        view = image.toQImage();
    }
    EXPECT_TRUE(RasterImage::fromQImage(std::move(view)) == randomImage(900, 900, 2));
}

TEST(PixelMemory, ClearPixelsAreClearAfterReuse) {
    constexpr std::size_t size = 5 * 1024 * 1024 + 12;
    std::uint8_t* pixels = allocatePixels(size);
    ASSERT_NE(pixels, nullptr);
    std::memset(pixels, 0x5a, size);
    freePixels(pixels, size);
    pixels = allocateClearPixels(size);
    ASSERT_NE(pixels, nullptr);
    for (std::size_t i = 0; i < size; ++i) ASSERT_EQ(pixels[i], 0);
    freePixels(pixels, size);
    releaseKeptPixelMemory();
}

class KeptPixelMemory : public testing::Test {
protected:
    void SetUp() override {
        if (!isMemoryKept()) GTEST_SKIP() << "freed pixel memory is not kept here";
    }
    ~KeptPixelMemory() override { releaseKeptPixelMemory(); }
};

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

/// All of it is there, not only promised.
std::uint8_t* filledPixels(std::size_t size) {
    std::uint8_t* const pixels = allocatePixels(size);
    if (pixels) std::memset(pixels, 1, size);
    return pixels;
}

TEST_F(KeptPixelMemory, TheNextBlockOfASizeIsTheOneThatWasFreed) {
    std::uint8_t* const pixels = filledPixels(40 * mebibyte);
    freePixels(pixels, 40 * mebibyte);
    std::uint8_t* const next = allocatePixels(40 * mebibyte);
    EXPECT_EQ(next, pixels);
    freePixels(next, 40 * mebibyte);
}

TEST_F(KeptPixelMemory, AKeptBlockOutlivesSmallOnes) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    std::uint8_t* const pixels = filledPixels(40 * mebibyte);
    freePixels(pixels, 40 * mebibyte);
    const tests::PeakMemory memory;
    std::uint8_t* const small = filledPixels(4 * mebibyte);
    freePixels(small, 4 * mebibyte);
    freePixels(filledPixels(40 * mebibyte), 40 * mebibyte);
    EXPECT_LT(memory.growth(), 6 << 20);
}

TEST_F(KeptPixelMemory, AKeptBlockIsNoBurdenToOneOfAnotherSize) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    std::uint8_t* const pixels = filledPixels(40 * mebibyte);
    freePixels(pixels, 40 * mebibyte);
    const tests::PeakMemory memory;
    freePixels(filledPixels(36 * mebibyte), 36 * mebibyte);
    EXPECT_LT(memory.growth(), 2 << 20);
}

TEST_F(KeptPixelMemory, AKeptBlockOutlivesClearOnes) {
    std::uint8_t* const pixels = filledPixels(8 * mebibyte);
    freePixels(pixels, 8 * mebibyte);
    std::uint8_t* const clear = allocateClearPixels(6 * mebibyte);
    std::uint8_t* const next = allocatePixels(8 * mebibyte);
    EXPECT_EQ(next, pixels);
    freePixels(clear, 6 * mebibyte);
    freePixels(next, 8 * mebibyte);
}

TEST_F(KeptPixelMemory, OfMoreThanMayBeKeptTheOldestGoes) {
    // Those of the least size that is kept are the most.
    for (const std::size_t size : {8 * mebibyte, 2 * mebibyte}) {
        std::vector<std::uint8_t*> blocks;
        while (blocks.size() * size <= keptPixelMemory()) blocks.push_back(allocatePixels(size));
        for (std::uint8_t* const block : blocks) freePixels(block, size);
        EXPECT_FALSE(isThere(blocks.front()));
        EXPECT_TRUE(std::all_of(blocks.begin() + 1, blocks.end(), isThere));
        releaseKeptPixelMemory();
        EXPECT_TRUE(std::none_of(blocks.begin(), blocks.end(), isThere));
    }
}

TEST_F(KeptPixelMemory, TakesBackEachBlockByWhatItHolds) {
    constexpr std::size_t size = 2 * mebibyte;
    std::vector<std::uint8_t*> blocks;
    for (int i = 0; i < 5; ++i) blocks.push_back(allocatePixels(size));
    for (std::size_t i = 0; i < blocks.size(); ++i) freePixels(blocks[i], size, 100 + i);
    for (const std::size_t i : {2U, 0U, 4U, 1U, 3U}) {
        EXPECT_EQ(takeBackPixels(100 + i, 2 * size), nullptr);
        EXPECT_EQ(takeBackPixels(100 + i, size), blocks[i]);
        EXPECT_EQ(takeBackPixels(100 + i, size), nullptr);
    }
    for (std::uint8_t* const block : blocks) freePixels(block, size);
}

} // namespace
} // namespace quillabrae::raster
