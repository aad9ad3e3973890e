// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MemoryPasteboard.h"
#include "raster/DecodeCache.h"
#include "raster/ImageReader.h"
#include "raster/LayerRasterService.h"
#include "store/ClipboardImageService.h"
#include "store/FakeWork.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quillabrae::store {
namespace {

namespace MimeTypes = platform::MimeTypes;
using raster::RasterImage;

/// Every pixel of another colour and alpha.
RasterImage picture(int width, int height) {
    RasterImage image(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel =
                image.mutableRow(y) + std::size_t{4} * static_cast<std::size_t>(x);
            pixel[3] = static_cast<std::uint8_t>(255 - 3 * x);
            pixel[0] = static_cast<std::uint8_t>(pixel[3] / (1 + y));
        }
    }
    return image;
}

QByteArray fileOf(const char* format, QSize size = {3, 2}, const QColor& color = Qt::red) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format)) << format;
    return buffer.data();
}

QColor colorOf(const model::PastedImage& image) {
    return raster::decodedImage(image.pngData).toQImage().pixelColor(0, 0);
}

class ClipboardImages : public testing::Test {
protected:
    QStringList copiedFileNames() const { return QDir(clipboardFolder).entryList(QDir::Files); }

    QTemporaryDir folder;
    QString clipboardFolder = folder.filePath(QStringLiteral("data/Clipboard"));
    platform::MemoryPasteboard pasteboard;
    FakeWork work;
    ClipboardImageService service{pasteboard, clipboardFolder, work};
};

TEST_F(ClipboardImages, ACopyOffersItsFormsInOrder) {
    ASSERT_TRUE(service.writePNGImage(picture(5, 4), QStringLiteral("cat"), QPointF(7, 9)));
    EXPECT_EQ(pasteboard.types(),
              QStringList({MimeTypes::png, MimeTypes::tiff, clipboardMetadataType,
                           MimeTypes::uriList, MimeTypes::copiedFiles}));
}

TEST_F(ClipboardImages, TheFormsOfACopyHoldTheSamePixels) {
    const RasterImage image = picture(60, 40);
    ASSERT_TRUE(service.writePNGImage(image, QStringLiteral("cat"), std::nullopt));
    const auto png = raster::readImage(pasteboard.data(MimeTypes::png));
    ASSERT_TRUE(png);
    EXPECT_EQ(*png, image);
    const auto tiff = raster::readImage(pasteboard.data(MimeTypes::tiff));
    ASSERT_TRUE(tiff);
    EXPECT_EQ(*tiff, image);
    const QList<QUrl> files = platform::localFiles(pasteboard);
    ASSERT_EQ(files.size(), 1);
    const auto file = raster::readImageFile(files.front().toLocalFile());
    ASSERT_TRUE(file);
    EXPECT_EQ(*file, image);
    EXPECT_EQ(pasteboard.data(MimeTypes::copiedFiles), "copy\n" + files.front().toEncoded());
    EXPECT_FALSE(pasteboard.types().contains(clipboardMetadataType));
}

TEST_F(ClipboardImages, TheMetadataAreTwoNumbers) {
    ASSERT_TRUE(service.writePNGImage(picture(1, 1), QString(), QPointF(-3.5, 12)));
    EXPECT_EQ(pasteboard.data(clipboardMetadataType),
              QByteArray(R"({"sourceX":-3.5,"sourceY":12})"));
}

TEST_F(ClipboardImages, AnOwnCopyIsPastedWithItsVeryBytesAndOrigin) {
    ASSERT_TRUE(service.writePNGImage(picture(5, 4), QStringLiteral("cat"), QPointF(7, 9)));
    const auto first = service.pastedImage();
    const auto second = service.pastedImage();
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(first->pngData.sharesBufferWith(second->pngData));
    EXPECT_EQ(first->width, 5);
    EXPECT_EQ(first->height, 4);
    EXPECT_EQ(first->sourceX, 7);
    EXPECT_EQ(first->sourceY, 9);
    EXPECT_EQ(service.pastedImageSize(), QSizeF(5, 4));
}

TEST_F(ClipboardImages, AnotherProgramsCopyReplacesTheOwnOne) {
    ASSERT_TRUE(service.writePNGImage(picture(5, 4), QStringLiteral("cat"), QPointF(7, 9)));
    pasteboard.put({{MimeTypes::text, "words"}});
    EXPECT_FALSE(service.pastedImage());
    EXPECT_FALSE(service.pastedImageSize());
}

TEST_F(ClipboardImages, ACopyOfAnotherInstanceKeepsItsOrigin) {
    ASSERT_TRUE(service.writePNGImage(picture(5, 4), QStringLiteral("cat"), QPointF(7, 9)));
    ClipboardImageService other(pasteboard, clipboardFolder, work);
    const auto pasted = other.pastedImage();
    ASSERT_TRUE(pasted);
    EXPECT_EQ(raster::decodedImage(pasted->pngData), picture(5, 4));
    EXPECT_EQ(pasted->sourceX, 7);
    EXPECT_EQ(pasted->sourceY, 9);
}

TEST_F(ClipboardImages, PngGoesBeforeTiffBeforeWebPBeforeOthers) {
    const std::vector<platform::MemoryPasteboard::Item> forms{
        {QStringLiteral("image/bmp"), fileOf("bmp", {3, 2}, Qt::yellow)},
        {MimeTypes::webP, fileOf("webp", {3, 2}, Qt::blue)},
        {MimeTypes::tiff, fileOf("tiff", {3, 2}, Qt::green)},
        {MimeTypes::png, fileOf("png", {3, 2}, Qt::red)}};
    const QColor winners[] = {Qt::red, Qt::green, Qt::blue, Qt::yellow};
    for (std::size_t left = 4; left >= 1; --left) {
        pasteboard.put({forms.begin(), forms.begin() + static_cast<std::ptrdiff_t>(left)});
        const auto pasted = service.pastedImage();
        ASSERT_TRUE(pasted) << left;
        const QColor expected = winners[4 - left];
        EXPECT_LE(std::abs(colorOf(*pasted).blue() - expected.blue()), 8) << left;
        EXPECT_LE(std::abs(colorOf(*pasted).red() - expected.red()), 8) << left;
    }
}

TEST_F(ClipboardImages, TheFirstFormThatDecodesWins) {
    pasteboard.put({{MimeTypes::png, "rubbish"}, {MimeTypes::tiff, fileOf("tiff")}});
    EXPECT_TRUE(service.pastedImage());
    pasteboard.put({{MimeTypes::png, "rubbish"}, {MimeTypes::tiff, QByteArray()}});
    EXPECT_FALSE(service.pastedImage());
    pasteboard.put({{MimeTypes::png, fileOf("png").left(40)}});
    EXPECT_FALSE(service.pastedImage());
}

TEST_F(ClipboardImages, APictureBeyondTheLimitsIsNone) {
    // A header that states 40,000 by 40,000 pixels.
    QByteArray png = fileOf("png");
    const QByteArray side = QByteArray::fromHex("00009c40");
    png.replace(16, 4, side).replace(20, 4, side);
    pasteboard.put({{MimeTypes::png, png}});
    EXPECT_FALSE(service.pastedImage());
}

TEST_F(ClipboardImages, BadMetadataAreIgnored) {
    for (const char* bad : {"", "{}", "[1,2]", R"({"sourceX":1})", R"({"sourceX":"1","sourceY":2})",
                            R"({"sourceX":1e999,"sourceY":2})"}) {
        pasteboard.put({{MimeTypes::png, fileOf("png")}, {clipboardMetadataType, bad}});
        const auto pasted = service.pastedImage();
        ASSERT_TRUE(pasted) << bad;
        EXPECT_FALSE(pasted->sourceX || pasted->sourceY) << bad;
    }
}

TEST_F(ClipboardImages, AnSvgDocumentMayBeText) {
    pasteboard.put({{MimeTypes::text, "<SVG width=\"3\"/>"}});
    EXPECT_EQ(service.svgData(), QByteArray("<SVG width=\"3\"/>"));
    pasteboard.put({{MimeTypes::text, "<SVG/>"}, {MimeTypes::svg, "<svg/>"}});
    EXPECT_EQ(service.svgData(), QByteArray("<svg/>"));
    pasteboard.put({{MimeTypes::text, "words"}});
    EXPECT_TRUE(service.svgData().isEmpty());
    pasteboard.put({});
    EXPECT_TRUE(service.svgData().isEmpty());
}

TEST_F(ClipboardImages, NothingIsCopiedWhenTheClipboardTakesNothing) {
    ASSERT_TRUE(service.writePNGImage(picture(5, 4), QStringLiteral("cat"), std::nullopt));
    pasteboard.isReadOnly = true;
    EXPECT_FALSE(service.writePNGImage(picture(2, 2), QStringLiteral("dog"), std::nullopt));
    pasteboard.put({});
    EXPECT_FALSE(service.pastedImage());
    EXPECT_FALSE(service.writePNGImage(RasterImage(), QStringLiteral("dog"), std::nullopt));
}

TEST_F(ClipboardImages, FilesAreNamedAfterThePictureAndAnId) {
    const QString id = QStringLiteral("-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.png$");
    const std::pair<QString, QString> names[] = {
        {QStringLiteral("a/b:c"), QStringLiteral("a-b-c")},
        {QString(), QStringLiteral("Selection")},
        {QStringLiteral(" \n"), QStringLiteral("Selection")},
        {QStringLiteral("  cat "), QStringLiteral("cat")},
        {QStringLiteral("/"), QStringLiteral("-")},
        {QString(400, QChar(u'\u00e9')), QString(100, QChar(u'\u00e9'))},
    };
    for (const auto& [suggested, cleaned] : names) {
        const auto file = service.writeTemporaryPNGFile("bytes", suggested);
        ASSERT_TRUE(file) << qPrintable(suggested);
        EXPECT_TRUE(QRegularExpression(u'^' + cleaned + id).match(file->fileName()).hasMatch())
            << qPrintable(file->fileName());
        QFile written(file->toLocalFile());
        ASSERT_TRUE(written.open(QIODevice::ReadOnly));
        EXPECT_EQ(written.readAll(), QByteArray("bytes"));
    }
    EXPECT_EQ(copiedFileNames().size(), 6);
}

TEST_F(ClipboardImages, WithoutAFolderACopyStillHoldsItsPicture) {
    QFile inTheWay(folder.filePath(QStringLiteral("data")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    EXPECT_FALSE(service.writeTemporaryPNGFile("bytes", QStringLiteral("cat")));
    ASSERT_TRUE(service.writePNGImage(picture(5, 4), QStringLiteral("cat"), std::nullopt));
    EXPECT_EQ(pasteboard.types(), QStringList({MimeTypes::png, MimeTypes::tiff}));
}

TEST_F(ClipboardImages, FilesOlderThanADayAreRemoved) {
    ASSERT_TRUE(service.writeTemporaryPNGFile("new", QStringLiteral("new")));
    const auto age = [](const QString& path) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QDateTime then = QDateTime::currentDateTimeUtc().addDays(-1).addSecs(-60);
        ASSERT_TRUE(file.setFileTime(then, QFileDevice::FileModificationTime));
    };
    age(service.writeTemporaryPNGFile("old", QStringLiteral("old"))->toLocalFile());
    age(service.writeTemporaryPNGFile("old", QStringLiteral(".hidden"))->toLocalFile());
    age(QDir(clipboardFolder).filePath(QStringLiteral("half.png.part")));
    age(QDir(clipboardFolder).filePath(QStringLiteral("letter.txt")));
    service.removeOldFiles(QDateTime::currentDateTimeUtc());
    const QStringList left = copiedFileNames();
    ASSERT_EQ(left.size(), 2) << qPrintable(left.join(u' '));
    EXPECT_EQ(left.front(), QStringLiteral("letter.txt"));
    EXPECT_TRUE(left.back().startsWith(QStringLiteral("new-")));
}

} // namespace
} // namespace quillabrae::store
