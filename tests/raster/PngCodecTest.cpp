// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Parallel.h"
#include "raster/PngBands.h"
#include "raster/PngCodec.h"
#include "raster/PngFixtures.h"

#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

struct Size {
    int width;
    int height;
};

/// Single pixels, rows and columns, one band, several with a short last one.
const std::vector<Size> sizes = {{1, 1},   {1, 300},   {700, 1},    {3, 7},     {64, 64},
                                 {257, 3}, {300, 900}, {1024, 200}, {5000, 40}, {32768, 5}};

/// Every premultiplied (colour, alpha) pair once in each component.
RasterImage everyPair() {
    RasterImage image(256, 256);
    for (int alpha = 0; alpha < 256; ++alpha) {
        std::uint8_t* row = image.mutableRow(alpha);
        for (int color = 0; color <= alpha; ++color) {
            std::uint8_t* pixel = row + std::ptrdiff_t{4} * color;
            pixel[0] = static_cast<std::uint8_t>(color);
            pixel[1] = static_cast<std::uint8_t>(alpha - color);
            pixel[2] = static_cast<std::uint8_t>(color / 2);
            pixel[3] = static_cast<std::uint8_t>(alpha);
        }
    }
    return image;
}

QByteArray run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput();
}

QString writtenFile(const QTemporaryDir& folder, const QByteArray& bytes) {
    QFile file(folder.filePath(QStringLiteral("image.png")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
}

TEST(PngCodec, PixelsSurviveEncodingAndDecodingBitForBit) {
    unsigned seed = 0;
    for (const Size& size : sizes) {
        const RasterImage image = randomImage(size.width, size.height, ++seed);
        const RasterImage decoded = decodePng(encodePng(image));
        EXPECT_TRUE(decoded == image) << size.width << " by " << size.height;
    }
}

TEST(PngCodec, EveryPairOfColourAndAlphaSurvives) {
    const RasterImage image = everyPair();
    EXPECT_TRUE(decodePng(encodePng(image)) == image);
}

TEST(PngCodec, StoresStraightColours) {
    const RasterImage image = everyPair();
    EXPECT_EQ(libpngPixels(encodePng(image).toByteArray()), straightPixels(image));
}

TEST(PngCodec, ANullImageHasNoBytes) {
    EXPECT_TRUE(encodePng(RasterImage()).isEmpty());
    EXPECT_TRUE(decodePng({}).isNull());
}

TEST(PngCodec, LibpngReadsTheSamePixels) {
    unsigned seed = 20;
    for (const Size& size : sizes) {
        const RasterImage image = randomImage(size.width, size.height, ++seed);
        EXPECT_EQ(libpngPixels(encodePng(image).toByteArray()), straightPixels(image))
            << size.width << " by " << size.height;
    }
}

TEST(PngCodec, MostlyEmptyPicturesSurviveAndReadTheSameEverywhere) {
    const QString pngcheck = QStandardPaths::findExecutable(QStringLiteral("pngcheck"));
    ASSERT_FALSE(pngcheck.isEmpty()) << "install pngcheck";
    const QTemporaryDir folder;
    unsigned seed = 30;
    for (const Size& size : sizes) {
        const RasterImage image = calmImage(size.width, size.height, ++seed);
        const model::PngBytes bytes = encodePng(image);
        EXPECT_TRUE(decodePng(bytes) == image) << size.width << " by " << size.height;
        const std::vector<std::uint8_t> straight = straightPixels(image);
        EXPECT_EQ(libpngPixels(bytes.toByteArray()), straight);
        const QImage decoded =
            QImage::fromData(bytes.toByteArray(), "PNG").convertedTo(QImage::Format_RGBA8888);
        ASSERT_EQ(decoded.sizeInBytes(), static_cast<qsizetype>(straight.size()));
        EXPECT_EQ(0, std::memcmp(decoded.constBits(), straight.data(), straight.size()));
        const QString file = writtenFile(folder, bytes.toByteArray());
        EXPECT_TRUE(run(pngcheck, {file}).startsWith("OK")) << size.width << " by " << size.height;
    }
}

TEST(PngCodec, QtReadsTheSamePixels) {
    const RasterImage image = randomImage(300, 900, 41);
    const QImage decoded = QImage::fromData(encodePng(image).toByteArray(), "PNG")
                               .convertedTo(QImage::Format_RGBA8888);
    ASSERT_EQ(decoded.size(), QSize(300, 900));
    const std::vector<std::uint8_t> straight = straightPixels(image);
    EXPECT_EQ(0, std::memcmp(decoded.constBits(), straight.data(), straight.size()));
}

TEST(PngCodec, ImageMagickReadsTheSamePixels) {
    const QString convert = QStandardPaths::findExecutable(QStringLiteral("convert-im6"));
    ASSERT_FALSE(convert.isEmpty()) << "install imagemagick";
    const QTemporaryDir folder;
    const RasterImage image = randomImage(300, 900, 42);
    const QString file = writtenFile(folder, encodePng(image).toByteArray());
    const QByteArray pixels = run(
        convert, {file, QStringLiteral("-depth"), QStringLiteral("8"), QStringLiteral("RGBA:-")});
    const std::vector<std::uint8_t> straight = straightPixels(image);
    ASSERT_EQ(pixels.size(), static_cast<qsizetype>(straight.size()));
    EXPECT_EQ(0, std::memcmp(pixels.constData(), straight.data(), straight.size()));
}

TEST(PngCodec, FilesPassPngcheck) {
    const QString pngcheck = QStandardPaths::findExecutable(QStringLiteral("pngcheck"));
    ASSERT_FALSE(pngcheck.isEmpty()) << "install pngcheck";
    const QTemporaryDir folder;
    unsigned seed = 50;
    for (const Size& size : sizes) {
        const RasterImage image = randomImage(size.width, size.height, ++seed);
        const QString file = writtenFile(folder, encodePng(image).toByteArray());
        EXPECT_TRUE(run(pngcheck, {file}).startsWith("OK")) << size.width << " by " << size.height;
    }
}

TEST(PngCodec, BytesDependOnThePixelsAloneAndNotOnThreads) {
    const RasterImage image = randomImage(700, 1500, 60);
    const model::PngBytes first = encodePng(image);
    (void)encodePng(randomImage(700, 1500, 61));
    EXPECT_EQ(encodePng(image), first);
    const ParallelThreadLimit limit(1);
    EXPECT_EQ(encodePng(image), first);
    EXPECT_TRUE(decodePng(first) == image);
}

TEST(PngCodec, AClearImageEncodesAsAnyOther) {
    const RasterImage clear(600, 700);
    RasterImage dotted = clear;
    dotted.mutableRow(650)[3] = 1;
    const model::PngBytes bytes = encodePng(clear);
    EXPECT_TRUE(decodePng(bytes) == clear);
    EXPECT_TRUE(decodePng(encodePng(dotted)) == dotted);
    EXPECT_EQ(libpngPixels(bytes.toByteArray()), straightPixels(clear));
}

TEST(PngCodec, ReencodingAfterChangedRowsGivesTheBytesOfAWholeEncode) {
    std::minstd_rand random(70);
    for (const Size& size : {Size{300, 900}, Size{1024, 517}, Size{7, 41}, Size{5000, 60}}) {
        const auto seed = static_cast<unsigned>(random());
        RasterImage image = size.height % 2 == 0 ? calmImage(size.width, size.height, seed)
                                                 : randomImage(size.width, size.height, seed);
        model::PngBytes bytes = encodePng(image);
        for (int round = 0; round < 12; ++round) {
            const int first = static_cast<int>(random() % static_cast<unsigned>(size.height));
            const int count = 1 + static_cast<int>(random() % 60);
            const RowRange rows{first, std::min(first + count, size.height)};
            const RasterImage paint = randomImage(size.width, 60, static_cast<unsigned>(random()));
            for (int y = rows.first; y < rows.last; ++y)
                std::memcpy(image.mutableRow(y), paint.row(y - rows.first), image.stride());
            bytes = encodePng(image, bytes, rows);
            ASSERT_EQ(bytes, encodePng(image)) << "rows " << rows.first << " to " << rows.last;
        }
    }
}

TEST(PngCodec, ReencodingWithNothingChangedSharesTheBytes) {
    const RasterImage image = randomImage(300, 300, 80);
    const model::PngBytes bytes = encodePng(image);
    EXPECT_TRUE(encodePng(image, bytes, {}).sharesBufferWith(bytes));
}

TEST(PngCodec, ReencodingOverAForeignOrOtherSizedFileEncodesTheWhole) {
    const RasterImage image = randomImage(64, 64, 81);
    const model::PngBytes whole = encodePng(image);
    const model::PngBytes foreign(libpngFile({6, 8}, 64, 64, 1));
    EXPECT_EQ(encodePng(image, foreign, {}), whole);
    EXPECT_EQ(encodePng(image, encodePng(randomImage(64, 65, 1)), {}), whole);
    EXPECT_EQ(encodePng(image, {}, {}), whole);
    EXPECT_EQ(encodePng(image, model::PngBytes(QByteArray("no PNG")), {}), whole);
}

TEST(PngCodec, ReencodingOverOurFileWithAStrangersChunkEncodesTheWhole) {
    const RasterImage image = randomImage(64, 64, 82);
    const QByteArray ours = encodePng(image).toByteArray();
    const QByteArray commented = ours.first(33) + chunk("teSt", "hello") + ours.sliced(33);
    EXPECT_TRUE(decodePng(pngBytes(commented)) == image);
    EXPECT_EQ(encodePng(image, pngBytes(commented), {}).toByteArray(), ours);
}

TEST(PngCodec, TheHeaderAloneGivesThePixelSize) {
    const QByteArray file = encodePng(randomImage(31, 17, 90)).toByteArray();
    EXPECT_EQ(pngPixelSize(pngBytes(file)), QSize(31, 17));
    EXPECT_EQ(pngPixelSize(pngBytes(file.first(33))), QSize(31, 17));
    EXPECT_EQ(pngPixelSize(pngBytes(file.first(32))), std::nullopt);
    EXPECT_EQ(pngPixelSize({}), std::nullopt);
}

TEST(PngCodec, ChecksumsOfPartsCombineToThatOfTheWhole) {
    std::minstd_rand random(95);
    for (const std::size_t size : {0, 1, 2, 100, 65521, 200'000}) {
        std::vector<std::uint8_t> bytes(size);
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 6);
        for (const std::size_t cut : {std::size_t{0}, size / 3, size}) {
            const ByteSpan whole(bytes);
            EXPECT_EQ(
                combinedAdler(adlerOf(whole.first(cut)), adlerOf(whole.subspan(cut)), size - cut),
                adlerOf(whole));
        }
    }
}

} // namespace
} // namespace quillabrae::raster
