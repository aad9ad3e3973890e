// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceText.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"
#include "raster/TextFont.h"
#include "raster/TextLayout.h"

#include <QPainter>
#include <QPainterPath>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace quillabrae::raster {
namespace {

using LayerRasterService::drawText;
using LayerRasterService::renderLayer;
using model::CanvasPoint;
using model::CanvasTextAlignment;
using model::ColorValue;
using model::PaintLayer;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr ColorValue black{0, 0, 0, 1};

const QString sans = QStringLiteral("DejaVu Sans");

TextStyle styleOf(const QString& family, double fontSize) {
    TextStyle style;
    style.fontFamily = family;
    style.fontSize = fontSize;
    return style;
}

/// The text alone, on a picture of its box.
RasterImage pictureOf(const QString& text, const TextStyle& style, QSize box,
                      const ColorValue& color = black) {
    RasterImage image(box.width(), box.height());
    drawText(TextLayout(text, style, box.width()), image, {0, 0}, color, box);
    return image;
}

/// The pixels that are not transparent.
QRect inkOf(const RasterImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (pixelAt(image, x, y).alpha > 0) ink |= QRect(x, y, 1, 1);
    return ink;
}

/// The font's outlines of one line, each letter at its caret.
RasterImage bookOutlines(const TextLayout& layout, QSize size) {
    const QFont font = textFont(layout.style(), static_cast<int>(layout.style().fontSize));
    const double baseline = std::round(QFontMetricsF(font).ascent());
    QPainterPath path;
    for (int i = 0; i < layout.text().size(); ++i)
        path.addText(layout.caretRect(i).x(), baseline, font, layout.text().mid(i, 1));
    path.setFillRule(Qt::WindingFill);
    RasterImage image(size.width(), size.height());
    LayerRasterService::draw(image, [&](QPainter& painter) { painter.fillPath(path, Qt::black); });
    return image;
}

TEST(DrawText, FillsTheFontsOwnOutlinesAtTheCarets) {
    const QSize box(130, 100);
    const TextLayout layout(QStringLiteral("Qg"), styleOf(QStringLiteral("DejaVu Serif"), 80), 130);
    const RasterImage drawn = pictureOf(layout.text(), layout.style(), box);
    EXPECT_LE(greatestDifference(drawn, bookOutlines(layout, box)), 1);
}

TEST(DrawText, StandsSmallLettersWithinAQuarterOfAPixel) {
    const QSize box(120, 30);
    const TextLayout layout(QStringLiteral("Wide open"), styleOf(sans, 20), box.width());
    const RasterImage drawn = pictureOf(layout.text(), layout.style(), box);
    EXPECT_LE(greatestDifference(drawn, bookOutlines(layout, box)), 255 / 4 + 6);
}

/// The definition over a picture of the text alone: clip to the box, source-over.
RasterImage bookDrawText(RasterImage canvas, const RasterImage& picture, QPoint at, int alpha) {
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            const QPoint inBox = QPoint(x, y) - at;
            if (!QRect(0, 0, picture.width(), picture.height()).contains(inBox)) continue;
            setPixel(canvas, x, y,
                     bookSourceOver(pixelAt(canvas, x, y), pixelAt(picture, inBox.x(), inBox.y()),
                                    alpha));
        }
    }
    return canvas;
}

TEST(DrawText, CompositesTheBoxWhereverItOverhangsTheCanvas) {
    std::mt19937 random(3);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 80; ++round) {
        const QSize canvas(1 + below(70), 1 + below(70));
        const QSize box(1 + below(90), 1 + below(90));
        const QPoint at(below(120) - 60, below(120) - 60);
        TextStyle style = styleOf(sans, 6 + below(30));
        style.isBold = below(2) == 0;
        style.isUnderlined = below(2) == 0;
        style.alignment = model::allCanvasTextAlignments()[random() % 3];
        const QString text = QStringLiteral("Over the edge\nof gjp");
        const ColorValue color{below(256) / 255.0, below(256) / 255.0, below(256) / 255.0,
                               below(256) / 255.0};
        const ColorValue opaque{color.red, color.green, color.blue, 1};
        const RasterImage before = randomImage(canvas.width(), canvas.height(), random);
        PaintLayer layer = layerOf(before, 0.5);
        drawText(text, layer, canvas.width(), canvas.height(),
                 {static_cast<double>(at.x()), static_cast<double>(at.y())}, color, style, box);
        ASSERT_TRUE(layer.bitmapPNGData.has_value());
        EXPECT_EQ(layer.opacity, 0.5);
        EXPECT_EQ(decodePng(*layer.bitmapPNGData),
                  bookDrawText(before, pictureOf(text, style, box, opaque), at,
                               static_cast<int>(std::lround(color.alpha * 255))));
    }
}

TEST(DrawText, CutsAFractionalBoxThroughItsPixels) {
    std::mt19937 random(4);
    const TextStyle style = styleOf(sans, 300);
    for (int round = 0; round < 20; ++round) {
        const auto fraction = [&] { return static_cast<double>(random() % 64) / 64.0; };
        // Far inside a full block, so that all that shows is the box.
        const QRectF box(3 + fraction(), 2 + fraction(), 20 + 9 * fraction(), 20 + 9 * fraction());
        RasterImage image(40, 40);
        const TextLayout layout(QString::fromUtf8("\u2588\u2588\u2588"), style, box.width());
        const QRect changed = drawText(layout, image, {box.x(), box.y()}, black, box.size());
        EXPECT_EQ(changed, box.toAlignedRect());
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                const QRectF inside = box.intersected(QRectF(x, y, 1, 1));
                EXPECT_NEAR(pixelAt(image, x, y).alpha, 255 * inside.width() * inside.height(), 5)
                    << x << ' ' << y;
            }
        }
    }
}

TEST(DrawText, LooksInTheLayerAsInAPictureOfTheBox) {
    const TextStyle style = styleOf(sans, 21.5);
    const ColorValue color{0.2, 0.4, 0.9, 0.7};
    const QString text = QString::fromUtf8("Same pixels, \u05d0\u05d1 and e\u0301\tafter");
    PaintLayer layer;
    drawText(text, layer, 200, 150, {31, 17}, color, style, {140, 100});
    RasterImage expected(200, 150);
    LayerRasterService::drawImage(expected, pictureOf(text, style, {140, 100}, color),
                                  {31, 17, 140, 100});
    EXPECT_EQ(renderLayer(layer, 200, 150), expected);
}

TEST(DrawText, WrapsALongLineAtTheBoxsWidth) {
    const TextStyle style = styleOf(sans, 16);
    const QString text = QStringLiteral("a long line of words that wraps");
    const QRect wide = inkOf(pictureOf(text, style, {600, 200}));
    const QRect narrow = inkOf(pictureOf(text, style, {80, 200}));
    EXPECT_LT(wide.height(), 20);
    EXPECT_GT(narrow.height(), 60);
    EXPECT_LE(narrow.width(), 80);
}

TEST(DrawText, ShowsOnlyTheLinesThatFitAndCutsThroughTheLastOne) {
    const TextStyle style = styleOf(sans, 20);
    const QString text = QStringLiteral("HHH\nHHH\nHHH");
    const RasterImage whole = pictureOf(text, style, {80, 100});
    const TextLayout layout(text, style, 80);
    // To the middle of the second line's letters.
    const int height = static_cast<int>(layout.lineRect(1).center().y());
    const RasterImage cut = pictureOf(text, style, {80, height});
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < 80; ++x) EXPECT_EQ(pixelAt(cut, x, y), pixelAt(whole, x, y));
    EXPECT_EQ(inkOf(cut).bottom(), height - 1);
    EXPECT_GT(inkOf(whole).bottom(), height + 10);
}

TEST(DrawText, BeginsAtTheBoxsTopEdge) {
    PaintLayer layer;
    drawText(QStringLiteral("H"), layer, 100, 100, {10, 30}, black, styleOf(sans, 20), {80, 60});
    const QRect ink = inkOf(renderLayer(layer, 100, 100));
    EXPECT_GE(ink.top(), 30);
    EXPECT_LE(ink.top(), 36);
    EXPECT_LE(ink.bottom(), 54);
}

TEST(DrawText, CentersWithinTheBoxsWidth) {
    TextStyle style = styleOf(sans, 20);
    style.alignment = CanvasTextAlignment::center;
    PaintLayer layer;
    drawText(QStringLiteral("HoH"), layer, 300, 60, {100, 0}, black, style, {150, 60});
    const QRect ink = inkOf(renderLayer(layer, 300, 60));
    EXPECT_NEAR(ink.left() + ink.width() / 2.0, 175, 1.0);
}

TEST(DrawText, DrawsInTheSystemsFontForAnUnknownFamily) {
    TextStyle style = styleOf(QStringLiteral("No Such Family Anywhere"), 20);
    const RasterImage plain = pictureOf(QStringLiteral("Fall"), style, {80, 30});
    EXPECT_FALSE(inkOf(plain).isEmpty());
    style.isBold = true;
    const RasterImage bold = pictureOf(QStringLiteral("Fall"), style, {80, 30});
    style.isBold = false;
    style.isItalic = true;
    const RasterImage italic = pictureOf(QStringLiteral("Fall"), style, {80, 30});
    EXPECT_NE(plain, bold);
    EXPECT_NE(plain, italic);
    EXPECT_NE(bold, italic);
}

TEST(DrawText, UnderlinesAndStrikesThrough) {
    TextStyle style = styleOf(sans, 40);
    const QString text = QStringLiteral("nnn");
    const RasterImage plain = pictureOf(text, style, {120, 60});
    const QRect ink = inkOf(plain);
    style.isUnderlined = true;
    const QRect underlined = inkOf(pictureOf(text, style, {120, 60}));
    EXPECT_GT(underlined.bottom(), ink.bottom() + 1);
    EXPECT_GE(underlined.width(), ink.width());
    style.isUnderlined = false;
    style.isStruckThrough = true;
    const RasterImage struck = pictureOf(text, style, {120, 60});
    const int middle = ink.center().y();
    int solidRows = 0;
    for (int y = middle - 8; y < middle + 8; ++y) {
        bool isSolid = true;
        for (int x = ink.left(); x <= ink.right(); ++x)
            isSolid = isSolid && pixelAt(struck, x, y).alpha > 0;
        if (isSolid) ++solidRows;
    }
    EXPECT_GE(solidRows, 1);
}

TEST(DrawText, DrawsEachScriptAndEmojiAndNothingForATab) {
    const TextStyle style = styleOf(sans, 24);
    for (const char* text :
         {"\u0645\u0631\u062d", "\u05e9\u05dc", "\U0001F600", "\u0416", "\u4e2d"})
        EXPECT_FALSE(inkOf(pictureOf(QString::fromUtf8(text), style, {90, 40})).isEmpty()) << text;
    EXPECT_TRUE(inkOf(pictureOf(QStringLiteral("\t\t"), style, {400, 40})).isEmpty());
    const QRect tabbed = inkOf(pictureOf(QStringLiteral("\tH"), style, {400, 40}));
    EXPECT_GT(tabbed.left(), 40);
}

TEST(DrawText, JoinsLettersThatJoin) {
    const TextStyle style = styleOf(sans, 60);
    const RasterImage joined = pictureOf(QString::fromUtf8("\u0628\u0628\u0628"), style, {200, 90});
    const RasterImage apart =
        pictureOf(QString::fromUtf8("\u0628\u200c\u0628\u200c\u0628"), style, {200, 90});
    EXPECT_NE(joined, apart);
    EXPECT_LT(inkOf(joined).width(), inkOf(apart).width());
}

TEST(DrawText, RewritesTheLayerWithNoChangeForABoxOutsideTheCanvas) {
    std::mt19937 random(5);
    const RasterImage before = randomImage(30, 20, random);
    for (const CanvasPoint at : {CanvasPoint{-100, 0}, CanvasPoint{30, 0}, CanvasPoint{0, -90},
                                 CanvasPoint{0, 20}, CanvasPoint{infinity, 0},
                                 CanvasPoint{0, notANumber}, CanvasPoint{-infinity, -infinity}}) {
        PaintLayer layer = layerOf(before);
        drawText(QStringLiteral("away"), layer, 30, 20, at, black, styleOf(sans, 20), {80, 80});
        ASSERT_TRUE(layer.bitmapPNGData.has_value());
        EXPECT_EQ(decodePng(*layer.bitmapPNGData), before);
    }
}

TEST(DrawText, RewritesTheLayerForAnEmptyText) {
    PaintLayer layer;
    drawText(QString(), layer, 6, 5, {0, 0}, black, styleOf(sans, 20), {6, 5});
    ASSERT_TRUE(layer.bitmapPNGData.has_value());
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), RasterImage(6, 5));
}

TEST(DrawText, DrawsNothingInABoxOrASizeThatIsNone) {
    const QString text = QStringLiteral("none");
    for (const QSizeF box : {QSizeF(0, 50), QSizeF(50, 0), QSizeF(-50, 50), QSizeF(50, -50),
                             QSizeF(notANumber, 50), QSizeF(50, notANumber)}) {
        RasterImage image(50, 50);
        EXPECT_TRUE(
            drawText(TextLayout(text, styleOf(sans, 20), box.width()), image, {0, 0}, black, box)
                .isEmpty());
        EXPECT_TRUE(inkOf(image).isEmpty());
    }
    for (const double fontSize : {0.0, -9.0, infinity, notANumber})
        EXPECT_TRUE(inkOf(pictureOf(text, styleOf(sans, fontSize), {50, 50})).isEmpty());
}

TEST(DrawText, DrawsInABoxOfAnySize) {
    RasterImage image(60, 40);
    const QSizeF box(infinity, 1e300);
    drawText(TextLayout(QStringLiteral("H"), styleOf(sans, 20), box.width()), image, {0, 0}, black,
             box);
    EXPECT_EQ(image, pictureOf(QStringLiteral("H"), styleOf(sans, 20), {60, 40}));
}

TEST(DrawText, DrawsLettersOfAnySize) {
    for (const double fontSize : {1e-9, 0.3, 1.0, 2000.0, 1e6, 1e300}) {
        RasterImage image(50, 50);
        drawText(TextLayout(QString::fromUtf8("\u2588"), styleOf(sans, fontSize), 50), image,
                 {0, 0}, black, {50, 50});
        EXPECT_EQ(pixelAt(image, 25, 49).alpha == 255, fontSize >= 2000.0) << fontSize;
    }
}

TEST(DrawText, HoldsAColorsComponentsToTheirRange) {
    const RasterImage image = pictureOf(QString::fromUtf8("\u2588"), styleOf(sans, 60), {20, 40},
                                        {7.0, notANumber, -3.0, 9.0});
    EXPECT_EQ(pixelAt(image, 10, 20), (Pixel{255, 0, 0, 255}));
    EXPECT_TRUE(
        inkOf(pictureOf(QStringLiteral("H"), styleOf(sans, 60), {60, 60}, {0, 0, 0, notANumber}))
            .isEmpty());
}

TEST(DrawText, TreatsUnreadableLayersAsEmptyOnes) {
    const TextStyle style = styleOf(sans, 20);
    PaintLayer empty;
    drawText(QStringLiteral("H"), empty, 300, 400, {10, 10}, black, style, {60, 40});
    // One of our own files with a band that no longer inflates.
    std::mt19937 random(6);
    QByteArray damaged = layerOf(randomImage(300, 400, random)).bitmapPNGData->toByteArray();
    for (qsizetype i = damaged.size() / 2; i < damaged.size() / 2 + 64; ++i) damaged[i] = '\xff';
    for (const QByteArray& bytes : {QByteArrayLiteral("no picture"), QByteArray(), damaged}) {
        PaintLayer layer;
        layer.bitmapPNGData = model::PngBytes(bytes);
        drawText(QStringLiteral("H"), layer, 300, 400, {10, 10}, black, style, {60, 40});
        ASSERT_TRUE(layer.bitmapPNGData.has_value());
        EXPECT_EQ(decodePng(*layer.bitmapPNGData), decodePng(*empty.bitmapPNGData));
    }
}

TEST(DrawText, StretchesALayerOfAnotherSizeFirst) {
    PaintLayer layer = layerOf(filledImage(3, 3, {10, 20, 30, 40}));
    drawText(QString(), layer, 9, 7, {0, 0}, black, styleOf(sans, 20), {9, 7});
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), filledImage(9, 7, {10, 20, 30, 40}));
}

TEST(DrawText, LeavesALayerOfARefusedSizeWithoutPixels) {
    for (const QSizeF canvas :
         {QSizeF(32'768, 32'768), QSizeF(infinity, 9), QSizeF(9, notANumber)}) {
        PaintLayer layer = layerOf(filledImage(3, 3, {10, 20, 30, 40}));
        drawText(QStringLiteral("H"), layer, canvas.width(), canvas.height(), {0, 0}, black,
                 styleOf(sans, 20), {9, 7});
        EXPECT_FALSE(layer.bitmapPNGData.has_value());
    }
}

TEST(DrawText, ReachesTheFarEndOfTheLongestCanvas) {
    PaintLayer layer;
    drawText(QStringLiteral("H"), layer, 32'768, 24, {32'740, 0}, black, styleOf(sans, 20),
             {28, 24});
    const QRect ink = inkOf(renderLayer(layer, 32'768, 24));
    EXPECT_GE(ink.left(), 32'740);
    EXPECT_GT(ink.width(), 8);
}

} // namespace
} // namespace quillabrae::raster
