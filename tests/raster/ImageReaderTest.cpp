// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/ImageReader.h"
#include "raster/PngCodec.h"
#include "raster/PngFixtures.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

QImage patches() {
    QImage picture(32, 16, QImage::Format_RGB32);
    picture.fill(QColor(200, 40, 40));
    for (int y = 0; y < 16; ++y)
        for (int x = 16; x < 32; ++x) picture.setPixelColor(x, y, QColor(30, 60, 220));
    return picture;
}

QByteArray written(const QImage& picture, const char* format,
                   QImageIOHandler::Transformations turned = QImageIOHandler::TransformationNone) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(100);
    writer.setTransformation(turned);
    EXPECT_TRUE(writer.write(picture)) << format;
    return bytes;
}

void expectNear(const RasterImage& image, int x, int y, const QColor& color) {
    const std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
    EXPECT_LE(std::abs(pixel[0] - color.red()), 3);
    EXPECT_LE(std::abs(pixel[1] - color.green()), 3);
    EXPECT_LE(std::abs(pixel[2] - color.blue()), 3);
    EXPECT_EQ(pixel[3], color.alpha());
}

class RasterFormat : public testing::TestWithParam<const char*> {};

TEST_P(RasterFormat, ReadsToItsPixels) {
    const std::optional<RasterImage> image = readImage(written(patches(), GetParam()));
    ASSERT_TRUE(image);
    ASSERT_EQ(image->width(), 32);
    ASSERT_EQ(image->height(), 16);
    expectNear(*image, 4, 4, QColor(200, 40, 40));
    expectNear(*image, 28, 12, QColor(30, 60, 220));
}

INSTANTIATE_TEST_SUITE_P(All, RasterFormat,
                         testing::Values("png", "jpeg", "bmp", "ppm", "tiff", "webp", "ico",
                                         "xpm"));

TEST(ImageReader, AFileIsToldByItsContentsWhateverItsName) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("picture.svg")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(written(patches(), "jpeg"));
    file.close();
    const std::optional<RasterImage> image = readImageFile(file.fileName());
    ASSERT_TRUE(image);
    expectNear(*image, 4, 4, QColor(200, 40, 40));
    EXPECT_FALSE(readImageFile(folder.filePath(QStringLiteral("absent.png"))));
    EXPECT_FALSE(readImageFile(folder.path()));
}

TEST(ImageReader, TheOrientationIsApplied) {
    const QByteArray file = written(patches(), "jpeg", QImageIOHandler::TransformationRotate90);
    const std::optional<RasterImage> image = readImage(file);
    ASSERT_TRUE(image);
    ASSERT_EQ(image->width(), 16);
    ASSERT_EQ(image->height(), 32);
    expectNear(*image, 8, 4, QColor(200, 40, 40));
    expectNear(*image, 8, 28, QColor(30, 60, 220));
}

TEST(ImageReader, OtherColourSpacesAreConvertedToSrgb) {
    for (const char* format : {"png", "jpeg"}) {
        QImage picture = patches();
        picture.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
        const QColor expected =
            QColor::fromRgb(QColorSpace(QColorSpace::DisplayP3)
                                .transformationToColorSpace(QColorSpace(QColorSpace::SRgb))
                                .map(QColor(30, 60, 220).rgb()));
        ASSERT_NE(expected, QColor(30, 60, 220));
        const std::optional<RasterImage> image = readImage(written(picture, format));
        ASSERT_TRUE(image) << format;
        expectNear(*image, 28, 12, expected);
    }
}

TEST(ImageReader, APngThatSaysSrgbKeepsItsVeryBytes) {
    QImage picture = patches().convertToFormat(QImage::Format_RGBA8888);
    picture.setPixelColor(3, 3, QColor(10, 100, 200, 77));
    picture.setColorSpace(QColorSpace(QColorSpace::SRgb));
    const QByteArray file = written(picture, "png");
    EXPECT_TRUE(file.contains("sRGB") || file.contains("iCCP"));
    const std::optional<RasterImage> image = readImage(file);
    ASSERT_TRUE(image);
    EXPECT_TRUE(*image == decodePng(model::PngBytes(file)));
}

TEST(ImageReader, APngOfTheGammaAndPrimariesOfSrgbKeepsItsVeryBytes) {
    QByteArray ofSrgb;
    for (const std::uint32_t number : {31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000})
        ofSrgb += bigEndian32(number);
    const QByteArray file = encodePng(*readImage(written(patches(), "png"))).toByteArray();
    const auto withColors = [&](std::uint32_t gamma, const QByteArray& primaries) {
        constexpr qsizetype afterHeader = 33;
        QByteArray stated = file;
        return readImage(stated.insert(
            afterHeader, chunk("gAMA", bigEndian32(gamma)) + chunk("cHRM", primaries)));
    };
    const auto plain = decodePng(model::PngBytes(file));
    const auto ordinary = withColors(45455, ofSrgb);
    ASSERT_TRUE(ordinary);
    EXPECT_TRUE(*ordinary == plain);
    const auto linear = withColors(100000, ofSrgb);
    ASSERT_TRUE(linear);
    EXPECT_FALSE(*linear == plain);
}

TEST(ImageReader, TranslucentPixelsComePremultiplied) {
    QImage picture(4, 4, QImage::Format_ARGB32);
    picture.fill(QColor(255, 128, 0, 128));
    for (const char* format : {"png", "tiff", "ico"}) {
        const std::optional<RasterImage> image = readImage(written(picture, format));
        ASSERT_TRUE(image) << format;
        EXPECT_EQ(image->row(0)[0], 128);
        EXPECT_EQ(image->row(0)[1], 64);
        EXPECT_EQ(image->row(0)[2], 0);
        EXPECT_EQ(image->row(0)[3], 128);
    }
}

TEST(ImageReader, GreyAnd16BitPicturesAreRead) {
    QImage gray(8, 8, QImage::Format_Grayscale8);
    gray.fill(90);
    gray.setColorSpace(QColorSpace(QColorSpace::SRgb));
    for (const char* format : {"png", "jpeg"}) {
        const std::optional<RasterImage> image = readImage(written(gray, format));
        ASSERT_TRUE(image) << format;
        expectNear(*image, 5, 5, QColor(90, 90, 90));
    }
    QImage deep(8, 8, QImage::Format_RGBA64);
    deep.fill(QColor(200, 40, 40));
    for (const char* format : {"png", "tiff"}) {
        const std::optional<RasterImage> image = readImage(written(deep, format));
        ASSERT_TRUE(image) << format;
        expectNear(*image, 5, 5, QColor(200, 40, 40));
    }
}

TEST(ImageReader, VectorPicturesAndOtherFilesAreNotRead) {
    const QByteArray vector =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"></svg>";
    EXPECT_FALSE(readImage(vector));
    EXPECT_FALSE(readImage("<?xml version=\"1.0\"?>" + vector));
    EXPECT_FALSE(readImage({}));
    EXPECT_FALSE(readImage("P"));
    EXPECT_FALSE(readImage("plain text"));
    EXPECT_FALSE(readImage("%PDF-1.4"));
}

/// A PNG of which there is nothing but the header.
QByteArray pngOfSide(std::uint32_t side) {
    return QByteArray("\x89PNG\r\n\x1a\n") +
           chunk("IHDR", bigEndian32(side) + bigEndian32(side) + QByteArray("\x08\x06\0\0\0", 5));
}

TEST(ImageReader, PicturesBeyondTheLimitsAreRefused) {
    QByteArray bitmap = written(patches(), "bmp");
    bitmap.replace(18, 4, QByteArray("\x40\x9c\0\0", 4));
    // A header alone; nothing could be allocated for these anyway.
    for (const QByteArray& file : {QByteArray("P6 20000 20000 255\n"), bitmap, pngOfSide(40'000)}) {
        ImageRefusal refusal = ImageRefusal::unreadable;
        EXPECT_FALSE(readImage(file, &refusal));
        EXPECT_EQ(refusal, ImageRefusal::beyondLimits) << file.left(24).toHex().toStdString();
    }
}

TEST(ImageReader, WhatCannotBeReadIsNotCalledTooLarge) {
    for (const QByteArray& file : {QByteArray("plain text"), QByteArray(), pngOfSide(30),
                                   pngOfSide(0), written(patches(), "jpeg").left(200)}) {
        ImageRefusal refusal = ImageRefusal::beyondLimits;
        EXPECT_FALSE(readImage(file, &refusal));
        EXPECT_EQ(refusal, ImageRefusal::unreadable) << file.left(24).toHex().toStdString();
    }
    ImageRefusal refusal = ImageRefusal::beyondLimits;
    EXPECT_FALSE(readImageFile(QStringLiteral("/absent.png"), &refusal));
    EXPECT_EQ(refusal, ImageRefusal::unreadable);
}

TEST(ImageReader, TornPicturesAreRefusedOrBoundedInSize) {
    for (const char* format : {"png", "webp"}) {
        const QByteArray file = written(patches(), format);
        for (qsizetype size = 0; size < file.size(); size += 7)
            EXPECT_FALSE(readImage(file.first(size))) << format << " of " << size;
    }
}

} // namespace
} // namespace quillabrae::raster
