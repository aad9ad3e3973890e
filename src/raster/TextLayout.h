// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/TextStyle.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringView>

#include <memory>
#include <vector>

class QPainter;
class QColor;

namespace quillabrae::raster {

/// Caret positions from `start` to `end`, `end` not before `start`.
struct TextRange {
    int start = 0;
    int end = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

enum class TextStep { character, word };

/// A text broken into lines of a width: what is measured, what is drawn, and where the carets of
/// an editor on top of it stand, all from the same lines.
///
/// Lines break between words, and within a word that is wider than the width. "\n", "\r\n", "\r"
/// and U+2029 end a paragraph, U+2028 a line; each paragraph runs in the direction of its first
/// strong character, and `left` and `right` mean the sides of the box in either direction. Tab
/// stops stand eight spaces apart.
///
/// Coordinates are canvas pixels from the top left corner of the box. A caret position is an index
/// into the text's UTF-16 units, from 0 to its length; those that are outside, or within what
/// shows as one character, are held to the nearest one before. Needs a QGuiApplication.
class TextLayout {
public:
    TextLayout(const QString& text, const TextStyle& style, double width);
    ~TextLayout();
    TextLayout(TextLayout&&) noexcept;
    TextLayout& operator=(TextLayout&&) noexcept;

    const QString& text() const { return m_text; }
    const TextStyle& style() const { return m_style; }
    double width() const { return m_width; }
    /// The whole height that the lines take, at least 1, and at most `maximumTextHeight`.
    double textHeight() const;
    static constexpr double maximumTextHeight = 100'000.0;

    /// Draws what of the text may show within `clip` (in the painter's coordinates), the box's top
    /// left corner at `topLeft`. Baselines stand a whole number of pixels below it.
    void draw(QPainter& painter, QPointF topLeft, const QColor& color, const QRectF& clip) const;

    // Lines

    /// At least 1.
    int lineCount() const;
    /// The whole width of the box, and the line's height.
    QRectF lineRect(int line) const;
    /// The carets that stand on a line. The one at the end of a line that was broken for its width
    /// is the next line's.
    TextRange lineRange(int line) const;
    int lineOf(int position) const;
    /// Whether the paragraph of a position reads from right to left.
    bool isRightToLeftAt(int position) const;
    /// The line at that height; the first above the text and the last below it.
    int lineAt(double y) const;

    // Carets

    /// Of no width, and the height of its line.
    QRectF caretRect(int position) const;
    /// The caret nearest to a point.
    int positionAt(QPointF point) const;
    /// The caret of a line that is nearest to `x`.
    int positionOnLine(int line, double x) const;
    int nextPosition(int position, TextStep step) const;
    int previousPosition(int position, TextStep step) const;
    /// The rectangles behind the characters from one caret to another, line by line; more than one
    /// for a line where directions mix. A line's end that is among them shows as a space.
    std::vector<QRectF> selectionRects(TextRange range) const;

private:
    struct Paragraph;
    struct Line;

    void addParagraph(QStringView text, int start);
    const Paragraph& paragraphOf(const Line& line) const;
    int paragraphAt(int position) const;
    QRectF boxRect(const QRectF& layoutRect) const;
    double layoutLength(double boxLength) const;
    double baselineShift(double top, double ascent) const;
    void addLineSelection(const Line& line, TextRange range, std::vector<QRectF>& rects) const;

    QString m_text;
    TextStyle m_style;
    double m_width;
    /// Text is laid out at a whole font size; this many canvas pixels are one unit of that layout.
    double m_scale;
    std::vector<Paragraph> m_paragraphs;
    std::vector<Line> m_lines;
    double m_layoutHeight = 0.0;
};

} // namespace quillabrae::raster
