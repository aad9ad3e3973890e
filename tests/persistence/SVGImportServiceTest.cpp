// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ImageCodecs.h"
#include "persistence/SVGImportService.h"
#include "raster/DecodeCache.h"
#include "raster/ImageReader.h"

#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace quillabrae::persistence {
namespace {

using SVGImportService::naturalSize;
using SVGImportService::pastedImage;
using SVGImportService::rasterizedPastedImage;

constexpr QSizeF fallback(7.0, 9.0);

QByteArray svg(const QByteArray& attributes, const QByteArray& contents = {}) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:xlink=\"http://www.w3.org/1999/xlink\" " +
           attributes + '>' + contents + "</svg>";
}

QImage pixelsOf(const std::optional<model::PastedImage>& image) {
    return image ? raster::decodedImage(image->pngData).toQImage() : QImage();
}

struct SizeCase {
    const char* text = nullptr;
    QSizeF size;
};

TEST(SvgNaturalSize, FollowsTheAttributesThenTheViewBox) {
    const SizeCase cases[] = {
        {"<svg width=\"40\" height='30'/>", {40, 30}},
        {"<svg width=\"100%\" height=\"100%\" viewBox=\"0 0 640 480\"/>", {100, 100}},
        {"<svg width=\"0\" height=\"5\" viewBox=\"0 0 640 480\"/>", {640, 480}},
        {"<svg viewBox=\"-10 -10 200 100\"/>", {200, 100}},
        {"<svg viewbox='0,0, 20.5,.5'/>", {20.5, 0.5}},
        {"<SVG WIDTH = \" 12.5em\" HEIGHT=\"3mm\"/>", {12.5, 3}},
        {"<svg><rect width=\"8\" height=\"4\"/></svg>", {8, 4}},
        {"<svg width=\"8\" viewBox=\"0 0 3 2\"/>", {3, 2}},
        {"<svg width=\"auto\" height=\"4\"/>", fallback},
        {"<svg viewBox=\"0 0 0 5\"/>", fallback},
        {"<svg/>", fallback},
        {"", fallback},
    };
    for (const SizeCase& entry : cases)
        EXPECT_EQ(naturalSize(entry.text, fallback), entry.size) << entry.text;
}

TEST(SvgNaturalSize, OfBytesThatAreNoTextIsTheDrawingsOwn) {
    EXPECT_EQ(naturalSize("<svg width=\"40\" height=\"30\" id=\"\xff\"/>", fallback), fallback);
}

TEST(SvgImport, AsksWithTheNaturalSizeAndDrawsAtTheChosenOne) {
    const QByteArray drawing =
        svg("width=\"4\" height=\"2\"", "<rect width=\"2\" height=\"2\" fill=\"#f00\"/>");
    QSizeF asked;
    const auto image = pastedImage(
        drawing,
        [&](QSizeF natural) {
            asked = natural;
            return SVGImportSizeResult{40.4, 10.0};
        },
        platform::directWorkRunner());
    EXPECT_EQ(asked, QSizeF(4, 2));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 40.0);
    EXPECT_EQ(image->height, 10.0);
    EXPECT_FALSE(image->sourceX);
    const QImage pixels = pixelsOf(image);
    EXPECT_EQ(pixels.size(), QSize(40, 10));
    EXPECT_EQ(pixels.pixelColor(19, 9), QColor(Qt::red));
    EXPECT_EQ(pixels.pixelColor(20, 0).alpha(), 0);
}

TEST(SvgImport, ASizeInPercentStretchesTheWholeDrawing) {
    const QByteArray drawing = svg("width=\"100%\" height=\"100%\" viewBox=\"0 0 64 32\"",
                                   "<rect width=\"64\" height=\"32\" fill=\"#00f\"/>");
    const QImage pixels = pixelsOf(rasterizedPastedImage(drawing, 20, 20));
    EXPECT_EQ(pixels.pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_EQ(pixels.pixelColor(19, 19), QColor(Qt::blue));
}

TEST(SvgImport, WhatIsNoSvgAsksNothing) {
    const auto neverAsked = [](QSizeF) -> std::optional<SVGImportSizeResult> {
        ADD_FAILURE() << "asked";
        return std::nullopt;
    };
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no drawing"), QByteArray("<html/>"),
                                    QByteArray("<svg width=\"4\" height=\"4\"")})
        EXPECT_FALSE(pastedImage(bytes, neverAsked, platform::directWorkRunner()));
}

TEST(SvgImport, CancelDrawsNothing) {
    EXPECT_FALSE(pastedImage(
        svg("width=\"4\" height=\"2\""), [](QSizeF) { return std::nullopt; },
        platform::directWorkRunner()));
}

TEST(SvgImport, SizesBeyondThoseOfAPictureAreRefused) {
    const QByteArray drawing = svg("width=\"4\" height=\"2\"");
    EXPECT_FALSE(rasterizedPastedImage(drawing, 40000, 1));
    EXPECT_FALSE(rasterizedPastedImage(drawing, 30000, 30000));
    EXPECT_FALSE(rasterizedPastedImage(drawing, 1e300, 1));
    const auto tooWide = [](QSizeF) { return SVGImportSizeResult{40000, 1}; };
    EXPECT_THROW(pastedImage(drawing, tooWide, platform::directWorkRunner()), SVGSizeRefused);
    const auto narrow = rasterizedPastedImage(drawing, 32768, 0.2);
    ASSERT_TRUE(narrow);
    EXPECT_EQ(narrow->height, 1.0);
}

TEST(SvgImport, LoadsNothingThatIsNotWithinTheFile) {
    const QTemporaryDir folder;
    QImage secret(4, 4, QImage::Format_RGB32);
    secret.fill(Qt::red);
    const QString file = folder.filePath(QStringLiteral("secret.png"));
    ASSERT_TRUE(secret.save(file));
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QByteArray address =
        "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/a.png";
    for (const QByteArray& place :
         {QByteArray(file.toLocal8Bit()), QByteArray("file://" + file.toLocal8Bit()), address}) {
        const QByteArray drawing = "<?xml-stylesheet href=\"" + place + "\"?>" +
                                   svg("width=\"4\" height=\"4\"",
                                       "<style>@import url(\"" + place +
                                           "\");</style><image width=\"4\" height=\"4\" href=\"" +
                                           place + "\" xlink:href=\"" + place + "\"/><use href=\"" +
                                           place + "#a\"/><script>document.x = 1</script>");
        const QImage pixels = pixelsOf(rasterizedPastedImage(drawing, 4, 4));
        ASSERT_EQ(pixels.size(), QSize(4, 4));
        EXPECT_EQ(pixels.pixelColor(2, 2).alpha(), 0);
    }
    EXPECT_FALSE(server.waitForNewConnection(50));
}

TEST(SvgImport, ExternalEntitiesAndEntityBombsComeToNothing) {
    QByteArray bomb = "<!DOCTYPE svg [<!ENTITY a0 \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\">";
    for (int i = 1; i < 12; ++i) {
        const QByteArray former = "&a" + QByteArray::number(i - 1) + ";";
        bomb += "<!ENTITY a" + QByteArray::number(i) + " \"" + former.repeated(10) + "\">";
    }
    bomb += "]>" + svg("width=\"4\" height=\"4\"", "<text>&a11;</text>");
    rasterizedPastedImage(bomb, 4, 4);

    const QByteArray thief = "<!DOCTYPE svg [<!ENTITY f SYSTEM \"file:///etc/hostname\">]>" +
                             svg("width=\"90\" height=\"20\"", "<text y=\"15\">&f;</text>");
    const QImage pixels = pixelsOf(rasterizedPastedImage(thief, 90, 20));
    for (int y = 0; y < pixels.height(); ++y)
        for (int x = 0; x < pixels.width(); ++x) ASSERT_EQ(pixels.pixelColor(x, y).alpha(), 0);
}

TEST(SvgImport, AUserWhoCancelsEndsADrawingThatTakesLong) {
    QByteArray blurs;
    for (int i = 0; i < 400; ++i)
        blurs += "<rect width=\"2000\" height=\"2000\" filter=\"url(#f)\" opacity=\"0.5\"/>";
    const QByteArray drawing =
        svg("width=\"2000\" height=\"2000\"",
            "<filter id=\"f\"><feTurbulence numOctaves=\"9\"/><feGaussianBlur "
            "stdDeviation=\"90\"/></filter>" +
                blurs);
    platform::WorkControl control;
    control.cancel();
    EXPECT_THROW(rasterizedPastedImage(drawing, 2000, 2000, control), platform::WorkCancelled);
}

/// `count` drawings from a folder of a package, far from each other in the alphabet.
QStringList drawingsIn(const char* folder, qsizetype count) {
    QStringList all;
    QDirIterator files(QString::fromLatin1(folder), {QStringLiteral("*.svg")},
                       QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) all << files.next();
    all.sort();
    QStringList chosen;
    for (qsizetype i = 0; i < count && all.size() >= count; ++i)
        chosen << all[i * all.size() / count];
    return chosen;
}

int greatestDifference(const raster::RasterImage& a, const raster::RasterImage& b) {
    int greatest = 0;
    for (std::size_t i = 0; i < a.byteCount(); ++i)
        greatest = std::max(greatest, std::abs(a.bytes()[i] - b.bytes()[i]));
    return greatest;
}

TEST(SvgImport, RealDrawingsLookAsTheLibrarysOwnProgramShowsThem) {
    const QTemporaryDir folder;
    const QString output = folder.filePath(QStringLiteral("expected.png"));
    const QStringList drawings = drawingsIn("/usr/share/icons/breeze", 12) +
                                 drawingsIn("/usr/share/icons/Tango/scalable", 12) +
                                 drawingsIn("/usr/share/iso-flags-svg", 12);
    ASSERT_EQ(drawings.size(), 36) << "the packages of drawings are not installed";
    for (const QString& drawing : drawings) {
        QFile file(drawing);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        EXPECT_FALSE(naturalSize(bytes, QSizeF()).isEmpty()) << drawing.toStdString();
        const auto image = rasterizedPastedImage(bytes, 120, 90);
        ASSERT_TRUE(image) << drawing.toStdString();
        QProcess::execute(QStringLiteral("rsvg-convert"),
                          {QStringLiteral("-w"), QStringLiteral("120"), QStringLiteral("-h"),
                           QStringLiteral("90"), drawing, QStringLiteral("-o"), output});
        const auto expected = raster::readImageFile(output);
        ASSERT_TRUE(expected);
        ASSERT_EQ(expected->width(), 120);
        ASSERT_EQ(expected->height(), 90);
        EXPECT_LE(greatestDifference(raster::decodedImage(image->pngData), *expected), 2)
            << drawing.toStdString();
    }
}

} // namespace
} // namespace quillabrae::persistence
