// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PixelMemory.h"
#include "raster/PngFixtures.h"
#include "raster/RasterImage.h"

#include <gtest/gtest.h>

#include <cstring>

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

} // namespace
} // namespace quillabrae::raster
