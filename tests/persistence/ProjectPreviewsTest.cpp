// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ProjectFileService.h"

#include <QColor>
#include <QImage>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstring>

namespace quillabrae::persistence {
namespace {

using ProjectFileService::fileIconImage;
using ProjectFileService::previewPDFData;

raster::RasterImage filled(int width, int height, QColor color) {
    raster::RasterImage image(width, height);
    image.paintTarget().fill(color);
    return image;
}

QColor pixel(const raster::RasterImage& image, int x, int y) {
    return image.toQImage().pixelColor(x, y);
}

TEST(FileIcon, AWidePictureIsCentredOnAClearSquare) {
    const raster::RasterImage icon = fileIconImage(filled(4, 2, Qt::blue));
    ASSERT_EQ(icon.width(), 1024);
    ASSERT_EQ(icon.height(), 1024);
    for (const int x : {0, 511, 1023}) {
        EXPECT_EQ(pixel(icon, x, 255).alpha(), 0);
        EXPECT_EQ(pixel(icon, x, 256), QColor(Qt::blue));
        EXPECT_EQ(pixel(icon, x, 767), QColor(Qt::blue));
        EXPECT_EQ(pixel(icon, x, 768).alpha(), 0);
    }
}

TEST(FileIcon, ATallPictureIsCentredToo) {
    const raster::RasterImage icon = fileIconImage(filled(1024, 4096, Qt::green));
    EXPECT_EQ(pixel(icon, 383, 512).alpha(), 0);
    EXPECT_EQ(pixel(icon, 384, 512), QColor(Qt::green));
    EXPECT_EQ(pixel(icon, 639, 0), QColor(Qt::green));
    EXPECT_EQ(pixel(icon, 640, 1023).alpha(), 0);
}

TEST(FileIcon, EnlargedPixelsKeepTheirEdges) {
    raster::RasterImage image = filled(2, 2, Qt::white);
    image.paintTarget().setPixelColor(0, 0, Qt::black);
    const raster::RasterImage icon = fileIconImage(image);
    EXPECT_EQ(pixel(icon, 511, 511), QColor(Qt::black));
    EXPECT_EQ(pixel(icon, 512, 511), QColor(Qt::white));
}

TEST(FileIcon, AReducedPictureIsAnAverageOfItsPixels) {
    raster::RasterImage image(4096, 4096);
    const auto bytes = image.mutableBytes();
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        const bool isWhite = i / 4 % 2 == 0;
        std::memset(&bytes[i], isWhite ? 0xff : 0, 3);
        bytes[i + 3] = 0xff;
    }
    EXPECT_NEAR(pixel(fileIconImage(image), 500, 500).red(), 127, 2);
}

TEST(FileIcon, ALineAndANullPictureDoNotFail) {
    EXPECT_EQ(fileIconImage(filled(10'000, 1, Qt::red)).width(), 1024);
    const raster::RasterImage empty = fileIconImage({});
    EXPECT_EQ(pixel(empty, 512, 512).alpha(), 0);
}

int countOf(const QByteArray& pdf, const QString& pattern) {
    auto found = QRegularExpression(pattern).globalMatch(QString::fromLatin1(pdf));
    int count = 0;
    for (; found.hasNext(); found.next()) ++count;
    return count;
}

TEST(PreviewPdf, IsOnePageOfThePicturesSizeWithThePictureInIt) {
    const QByteArray pdf = previewPDFData(filled(301, 202, Qt::red));
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_EQ(countOf(pdf, QStringLiteral("/Type\\s*/Page\\b(?!s)")), 1);
    EXPECT_EQ(countOf(pdf, QStringLiteral("/MediaBox\\s*\\[0(\\.0+)? 0(\\.0+)? 301(\\.0+)? "
                                          "202(\\.0+)?\\]")),
              1);
    EXPECT_EQ(countOf(pdf, QStringLiteral("/Subtype\\s*/Image\\s+/Width 301\\s+/Height 202")), 1);
    EXPECT_EQ(countOf(pdf, QStringLiteral("/SMask\\s+\\d")), 0);
}

TEST(PreviewPdf, ANullPictureHasNone) {
    EXPECT_TRUE(previewPDFData({}).isEmpty());
}

} // namespace
} // namespace quillabrae::persistence
