// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/TextFont.h"
#include "raster/TextLayout.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace quillabrae::raster {
namespace {

using model::CanvasTextAlignment;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const QString mono = QStringLiteral("DejaVu Sans Mono");
const QString sans = QStringLiteral("DejaVu Sans");
const QString hebrew = QString::fromUtf8("שלום");

TextStyle styleOf(const QString& family, double fontSize,
                  CanvasTextAlignment alignment = CanvasTextAlignment::left) {
    TextStyle style;
    style.fontFamily = family;
    style.fontSize = fontSize;
    style.alignment = alignment;
    return style;
}

/// The advance of every character of the mono font.
double monoAdvance(double fontSize) {
    return fontSize * 1233.0 / 2048.0;
}

std::vector<TextRange> lineRanges(const TextLayout& layout) {
    std::vector<TextRange> ranges;
    for (int line = 0; line < layout.lineCount(); ++line) ranges.push_back(layout.lineRange(line));
    return ranges;
}

/// The lines of a text of single spaces in the mono font, broken greedily.
std::vector<TextRange> bookLines(const QString& text, int columns) {
    std::vector<TextRange> lines;
    int start = 0;
    while (static_cast<int>(text.size()) - start > columns) {
        int end = start + columns;
        // A space may hang over the edge.
        while (end > start && text[end] != QLatin1Char(' ')) --end;
        const bool breaksWord = end == start;
        if (breaksWord) end = start + columns;
        lines.push_back({start, breaksWord ? end - 1 : end});
        start = breaksWord ? end : end + 1;
    }
    lines.push_back({start, static_cast<int>(text.size())});
    return lines;
}

TEST(TextFont, IsOfTheFamilyWithItsTraits) {
    TextStyle style = styleOf(QStringLiteral("DejaVu Serif"), 20);
    EXPECT_EQ(QFontInfo(textFont(style, 20)).family(), QStringLiteral("DejaVu Serif"));
    EXPECT_FALSE(QFontInfo(textFont(style, 20)).bold());
    style.isBold = true;
    style.isItalic = true;
    style.isUnderlined = true;
    style.isStruckThrough = true;
    const QFont font = textFont(style, 33);
    EXPECT_TRUE(QFontInfo(font).bold());
    EXPECT_TRUE(font.italic());
    EXPECT_TRUE(font.underline());
    EXPECT_TRUE(font.strikeOut());
    EXPECT_EQ(font.pixelSize(), 33);
}

TEST(TextFont, IsTheFaceWhoseFullNameIsGiven) {
    for (const char* name : {"DejaVu Serif Bold", "DejaVuSerif-Bold"}) {
        const QFont font = textFont(styleOf(QString::fromLatin1(name), 20), 20);
        EXPECT_EQ(QFontInfo(font).family(), QStringLiteral("DejaVu Serif")) << name;
        EXPECT_TRUE(QFontInfo(font).bold()) << name;
    }
}

TEST(TextFont, FallsBackToTheSystemsFontWithItsTraitsConverted) {
    const QString system =
        QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).family();
    for (const char* name : {"No Such Family Anywhere", "", " ", "-"}) {
        TextStyle style = styleOf(QString::fromLatin1(name), 20);
        EXPECT_EQ(QFontInfo(textFont(style, 20)).family(), system) << name;
        EXPECT_FALSE(textFont(style, 20).bold()) << name;
        style.isBold = true;
        style.isItalic = true;
        EXPECT_TRUE(textFont(style, 20).bold()) << name;
        EXPECT_TRUE(textFont(style, 20).italic()) << name;
    }
}

TEST(TextLayout, BreaksALongLineBetweenWordsAndAWordThatIsTooLongWithin) {
    const double advance = monoAdvance(20);
    const TextLayout layout(QStringLiteral("one two three fourfivesix"), styleOf(mono, 20),
                            8.5 * advance);
    EXPECT_EQ(lineRanges(layout), (std::vector<TextRange>{{0, 7}, {8, 13}, {14, 21}, {22, 25}}));
}

TEST(TextLayout, BreaksAsTheBookDoesWhateverTheWidth) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        QString text;
        const int words = 1 + static_cast<int>(random() % 9);
        for (int word = 0; word < words; ++word) {
            if (word > 0) text += QLatin1Char(' ');
            text += QString(1 + static_cast<int>(random() % 11), QLatin1Char('x'));
        }
        const int columns = 1 + static_cast<int>(random() % 14);
        const double fontSize = 5.0 + static_cast<double>(random() % 4000) / 100.0;
        const TextLayout layout(text, styleOf(mono, fontSize),
                                (columns + 0.5) * monoAdvance(fontSize));
        EXPECT_EQ(lineRanges(layout), bookLines(text, columns))
            << text.toStdString() << ' ' << columns << ' ' << fontSize;
    }
}

TEST(TextLayout, EndsParagraphsAtEachKindOfBreak) {
    const TextLayout layout(QString::fromUtf8("ab\nc\r\nd\re\u2029f\u2028g\n"), styleOf(sans, 16),
                            500);
    EXPECT_EQ(
        lineRanges(layout),
        (std::vector<TextRange>{{0, 2}, {3, 4}, {6, 7}, {8, 9}, {10, 11}, {12, 13}, {14, 14}}));
}

TEST(TextLayout, OfNoTextHasOneEmptyLineForTheCaret) {
    const TextLayout layout(QString(), styleOf(sans, 20), 100);
    EXPECT_EQ(layout.lineCount(), 1);
    EXPECT_EQ(layout.lineRange(0), (TextRange{0, 0}));
    EXPECT_GT(layout.caretRect(0).height(), 20);
    EXPECT_EQ(layout.caretRect(0).x(), 0);
    const TextLayout centered(QString(), styleOf(sans, 20, CanvasTextAlignment::center), 100);
    EXPECT_NEAR(centered.caretRect(0).x(), 50, 0.1);
}

TEST(TextLayout, StandsItsLinesOneBelowTheOther) {
    const TextLayout layout(QStringLiteral("a\nb\n\nc"), styleOf(sans, 20), 100);
    const double height = std::ceil(QFontMetricsF(textFont(styleOf(sans, 20), 20)).lineSpacing());
    ASSERT_EQ(layout.lineCount(), 4);
    for (int line = 0; line < 4; ++line) {
        EXPECT_NEAR(layout.lineRect(line).y(), line * height, 1.0) << line;
        EXPECT_NEAR(layout.lineRect(line).height(), height, 1.0) << line;
        EXPECT_EQ(layout.lineRect(line).width(), 100) << line;
    }
    EXPECT_NEAR(layout.textHeight(), 4 * height, 4.0);
    EXPECT_EQ(layout.textHeight(), std::ceil(layout.textHeight()));
}

TEST(TextLayout, ScalesAllItsMeasuresWithTheFontSize) {
    const QString text = QStringLiteral("Wave after wave\nafter wave");
    const TextLayout small(text, styleOf(sans, 12.25), 100);
    const TextLayout large(text, styleOf(sans, 1225), 10'000);
    ASSERT_EQ(lineRanges(small), lineRanges(large));
    for (int position = 0; position <= text.size(); ++position) {
        EXPECT_NEAR(small.caretRect(position).x() * 100, large.caretRect(position).x(), 25)
            << position;
    }
}

TEST(TextLayout, AlignsItsLinesWithinTheBox) {
    const double advance = monoAdvance(20);
    const QString text = QStringLiteral("ab\nabcd");
    const auto carets = [&](CanvasTextAlignment alignment) {
        const TextLayout layout(text, styleOf(mono, 20, alignment), 200);
        return std::pair(layout.caretRect(0).x(), layout.caretRect(3).x());
    };
    const auto expectNear = [](std::pair<double, double> actual, double first, double second) {
        EXPECT_NEAR(actual.first, first, 0.1);
        EXPECT_NEAR(actual.second, second, 0.1);
    };
    expectNear(carets(CanvasTextAlignment::left), 0, 0);
    expectNear(carets(CanvasTextAlignment::center), 100 - advance, 100 - 2 * advance);
    expectNear(carets(CanvasTextAlignment::right), 200 - 2 * advance, 200 - 4 * advance);
}

TEST(TextLayout, MeansTheSidesOfTheBoxInEitherDirection) {
    const TextLayout left(hebrew, styleOf(sans, 20), 200);
    EXPECT_NEAR(left.caretRect(4).x(), 0, 0.1);
    EXPECT_GT(left.caretRect(0).x(), 20);
    const TextLayout right(hebrew, styleOf(sans, 20, CanvasTextAlignment::right), 200);
    EXPECT_NEAR(right.caretRect(0).x(), 200, 0.1);
}

TEST(TextLayout, GivesEachParagraphItsOwnDirection) {
    const TextLayout layout(QStringLiteral("ab\n") + hebrew, styleOf(sans, 20), 200);
    EXPECT_LT(layout.caretRect(0).x(), layout.caretRect(1).x());
    EXPECT_GT(layout.caretRect(3).x(), layout.caretRect(4).x());
}

TEST(TextLayout, StandsTabStopsEightSpacesApart) {
    const double stop = 8 * monoAdvance(20);
    const TextLayout layout(QStringLiteral("\ta\tbcdefghij\tk"), styleOf(mono, 20), 2000);
    EXPECT_NEAR(layout.caretRect(1).x(), stop, 0.5);
    EXPECT_NEAR(layout.caretRect(3).x(), 2 * stop, 0.5);
    EXPECT_NEAR(layout.caretRect(13).x(), 4 * stop, 0.5);
}

TEST(TextLayout, HitsTheCaretThatAPointIsNearestTo) {
    const double advance = monoAdvance(20);
    const TextLayout layout(QStringLiteral("abcdef gh\nij"), styleOf(mono, 20), 7.5 * advance);
    ASSERT_EQ(layout.lineCount(), 3);
    const double middle = layout.lineRect(1).center().y();
    EXPECT_EQ(layout.positionAt({2.4 * advance, 1}), 2);
    EXPECT_EQ(layout.positionAt({2.6 * advance, 1}), 3);
    EXPECT_EQ(layout.positionAt({-50, middle}), 7);
    EXPECT_EQ(layout.positionAt({5000, middle}), 9);
    EXPECT_EQ(layout.positionAt({5000, 1}), 6) << "not the first caret of the next line";
    EXPECT_EQ(layout.positionAt({0, -100}), 0);
    EXPECT_EQ(layout.positionAt({5000, 5000}), 12);
    for (const double odd : {infinity, -infinity, notANumber, 1e300}) {
        const int position = layout.positionAt({odd, odd});
        EXPECT_TRUE(position >= 0 && position <= 12) << odd;
    }
}

TEST(TextLayout, FindsEveryCaretAgainWhereItDrawsIt) {
    for (const QString& text :
         {QStringLiteral("The quick brown fox\njumps\n\nover it"), hebrew + QStringLiteral("\nab"),
          QString::fromUtf8("a\U0001F600b e\u0301x")}) {
        const TextLayout layout(text, styleOf(sans, 24), 90);
        for (int position = 0;; position = layout.nextPosition(position, TextStep::character)) {
            const QRectF caret = layout.caretRect(position);
            EXPECT_EQ(layout.positionAt(caret.center()), position) << text.toStdString();
            EXPECT_EQ(layout.lineAt(caret.center().y()), layout.lineOf(position));
            if (position == text.size()) break;
        }
    }
}

TEST(TextLayout, StepsOverWhatShowsAsOneCharacter) {
    const QString text = QString::fromUtf8("a\U0001F600e\u0301\r\nb");
    const TextLayout layout(text, styleOf(sans, 24), 500);
    std::vector<int> forward{0};
    while (forward.back() < text.size())
        forward.push_back(layout.nextPosition(forward.back(), TextStep::character));
    EXPECT_EQ(forward, (std::vector<int>{0, 1, 3, 5, 7, 8}));
    std::vector<int> backward{8};
    while (backward.back() > 0)
        backward.push_back(layout.previousPosition(backward.back(), TextStep::character));
    EXPECT_EQ(backward, (std::vector<int>{8, 7, 5, 3, 1, 0}));
    EXPECT_EQ(layout.nextPosition(8, TextStep::character), 8);
    EXPECT_EQ(layout.previousPosition(0, TextStep::character), 0);
}

TEST(TextLayout, StepsByWords) {
    const TextLayout layout(QStringLiteral("one two\nthree"), styleOf(sans, 24), 500);
    EXPECT_EQ(layout.nextPosition(0, TextStep::word), 4);
    EXPECT_EQ(layout.nextPosition(4, TextStep::word), 7);
    EXPECT_EQ(layout.nextPosition(7, TextStep::word), 8);
    EXPECT_EQ(layout.previousPosition(13, TextStep::word), 8);
    EXPECT_EQ(layout.previousPosition(7, TextStep::word), 4);
}

TEST(TextLayout, HoldsCaretsOutsideTheTextToItsEnds) {
    const TextLayout layout(QStringLiteral("ab"), styleOf(mono, 20), 500);
    EXPECT_EQ(layout.caretRect(-5), layout.caretRect(0));
    EXPECT_EQ(layout.caretRect(99), layout.caretRect(2));
    EXPECT_EQ(layout.lineOf(-5), 0);
    EXPECT_EQ(layout.lineOf(99), 0);
    EXPECT_EQ(layout.nextPosition(-5, TextStep::character), 1);
    EXPECT_EQ(layout.previousPosition(99, TextStep::character), 1);
    EXPECT_EQ(layout.nextPosition(99, TextStep::character), 2);
    EXPECT_EQ(layout.previousPosition(-99, TextStep::word), 0);
}

TEST(TextLayout, MovesTheCaretOverASpaceAtTheEnd) {
    for (const CanvasTextAlignment alignment : model::allCanvasTextAlignments()) {
        const TextLayout ahead(QStringLiteral("ab  "), styleOf(mono, 20, alignment), 500);
        EXPECT_NEAR(ahead.caretRect(4).x() - ahead.caretRect(2).x(), 2 * monoAdvance(20), 0.1);
        const TextLayout back(hebrew + QStringLiteral("  "), styleOf(sans, 20, alignment), 500);
        EXPECT_NEAR(back.caretRect(6).x() - back.caretRect(4).x(), -12.7, 0.1);
    }
}

TEST(TextLayout, HoldsCaretsWithinALineBreakBeforeIt) {
    const TextLayout layout(QStringLiteral("ab\r\nc"), styleOf(mono, 20), 500);
    EXPECT_EQ(layout.caretRect(3), layout.caretRect(2));
    EXPECT_EQ(layout.lineOf(3), 0);
}

TEST(TextLayout, SelectsLineByLineWithTheBreaksAsSpaces) {
    const double advance = monoAdvance(20);
    const TextLayout layout(QStringLiteral("abc\n\ndef"), styleOf(mono, 20), 500);
    const std::vector<QRectF> rects = layout.selectionRects({1, 7});
    ASSERT_EQ(rects.size(), 3U);
    const auto expectSpan = [&](int line, double from, double to) {
        const QRectF& rect = rects[static_cast<std::size_t>(line)];
        EXPECT_NEAR(rect.left(), from * advance, 0.1);
        EXPECT_NEAR(rect.right(), to * advance, 0.1);
        EXPECT_EQ(rect.top(), layout.lineRect(line).top());
        EXPECT_EQ(rect.height(), layout.lineRect(line).height());
    };
    expectSpan(0, 1, 4);
    expectSpan(1, 0, 1);
    expectSpan(2, 0, 2);
    EXPECT_TRUE(layout.selectionRects({2, 2}).empty());
    EXPECT_TRUE(layout.selectionRects({5, 2}).empty());
    EXPECT_EQ(layout.selectionRects({-9, 99}).size(), 3U);
}

TEST(TextLayout, SelectsABreakBehindRightToLeftTextAtItsLeft) {
    const TextLayout layout(hebrew + QStringLiteral("\nab"), styleOf(sans, 20), 500);
    const std::vector<QRectF> rects = layout.selectionRects({4, 5});
    ASSERT_EQ(rects.size(), 1U);
    EXPECT_NEAR(rects[0].right(), layout.caretRect(4).x(), 0.1);
}

TEST(TextLayout, StandsItsCaretsAtTheInkOfTheirLetters) {
    // Directions mixed, within and across lines; a letter is selected where it is drawn.
    for (const double width : {70.0, 500.0}) {
        const QString text = QStringLiteral("ab ") + hebrew + QStringLiteral(" cd ") + hebrew +
                             QStringLiteral(" 12 ") + hebrew;
        const TextLayout layout(text, styleOf(sans, 20), width);
        for (int i = 0; i < text.size(); ++i) {
            if (text[i] == QLatin1Char(' ')) continue;
            const std::vector<QRectF> rects = layout.selectionRects({i, i + 1});
            ASSERT_EQ(rects.size(), 1U) << i;
            const double advance =
                QFontMetricsF(textFont(layout.style(), 20)).horizontalAdvance(text[i]);
            EXPECT_NEAR(rects[0].width(), advance, 0.3) << i << ' ' << width;
            // No other letter of its line stands there; spaces may hang over an edge.
            for (int other = 0; other < text.size(); ++other) {
                if (other == i || layout.lineOf(other) != layout.lineOf(i) ||
                    text[other] == QLatin1Char(' '))
                    continue;
                for (const QRectF& rect : layout.selectionRects({other, other + 1}))
                    EXPECT_LE(rect.intersected(rects[0]).width(), 0.05) << i << ' ' << other;
            }
        }
    }
}

TEST(TextLayout, SelectsMixedDirectionsInPieces) {
    const QString text = QStringLiteral("ab ") + hebrew;
    const TextLayout layout(text, styleOf(sans, 20), 500);
    // The first two letters of the Hebrew word stand at the right end of the line.
    const std::vector<QRectF> rects = layout.selectionRects({0, 5});
    ASSERT_EQ(rects.size(), 2U);
    EXPECT_LT(rects[0].right() + 1, rects[1].left());
    EXPECT_EQ(layout.selectionRects({0, 7}).size(), 1U);
}

TEST(TextLayout, OfASizeThatIsNoneHasNoExtent) {
    for (const double fontSize : {0.0, -20.0, infinity, notANumber}) {
        const TextLayout layout(QStringLiteral("ab\nc"), styleOf(sans, fontSize), 100);
        EXPECT_EQ(layout.textHeight(), 1) << fontSize;
        EXPECT_EQ(layout.caretRect(1), QRectF(0, 0, 0, 0)) << fontSize;
        EXPECT_LE(layout.positionAt({10, 10}), 4) << fontSize;
    }
}

TEST(TextLayout, StandsAnyWidthAndSize) {
    for (const double fontSize : {1e-300, 0.01, 0.5, 511.9, 4096.0, 1e9, 1e300}) {
        for (const double width : {-infinity, -10.0, 0.0, notANumber, 0.01, 32'768.0, 1e300}) {
            const TextLayout layout(QStringLiteral("ab c"), styleOf(sans, fontSize), width);
            EXPECT_GE(layout.textHeight(), 1) << fontSize << ' ' << width;
            EXPECT_LE(layout.textHeight(), TextLayout::maximumTextHeight);
            EXPECT_TRUE(std::isfinite(layout.caretRect(2).x())) << fontSize << ' ' << width;
            EXPECT_LE(layout.positionAt({3, 3}), 4) << fontSize << ' ' << width;
        }
    }
}

TEST(TextLayout, StandsAnyCharacters) {
    std::mt19937 random(11);
    const std::vector<char16_t> odd{0,      1,      9,      10,     11,     12,     13,     0x85,
                                    0xad,   0x300,  0x5d0,  0x627,  0x640,  0x94d,  0x0e33, 0x200d,
                                    0x200f, 0x202e, 0x2028, 0x2029, 0xd83d, 0xde00, 0xdfff, 0xfe0f,
                                    0xfeff, 0xfffc, 0xffff, 'a',    ' '};
    for (int round = 0; round < 150; ++round) {
        QString text;
        for (std::size_t i = 0, n = random() % 24; i < n; ++i)
            text += QChar(random() % 4 == 0 ? static_cast<char16_t>(random() & 0xffff)
                                            : odd[random() % odd.size()]);
        const TextLayout layout(text, styleOf(sans, 17), static_cast<double>(random() % 90));
        const int end = static_cast<int>(text.size());
        int steps = 0;
        for (int at = 0; at < end; ++steps) {
            const int next = layout.nextPosition(at, TextStep::character);
            ASSERT_GT(next, at);
            EXPECT_GE(layout.caretRect(at).height(), 0);
            at = next;
        }
        for (int at = end; at > 0; --steps) {
            const int previous = layout.previousPosition(at, TextStep::character);
            ASSERT_LT(previous, at);
            at = previous;
        }
        EXPECT_EQ(steps, 0);
        for (const QRectF& rect : layout.selectionRects({0, end})) EXPECT_GT(rect.width(), 0);
    }
}

} // namespace
} // namespace quillabrae::raster
