// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/TextLayout.h"

#include "raster/TextCells.h"
#include "raster/TextFont.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::raster {
namespace {

/// Text is laid out at a size within these, in whole pixels, and scaled to the size wanted.
constexpr double smallestLayoutSize = 1.0;
constexpr double largestLayoutSize = 512.0;
/// Beyond every canvas.
constexpr double largestFontSize = 1e6;
/// The widest line that the text engine's fixed-point numbers hold.
constexpr double largestLayoutLength = 8e6;
/// How far, in lines, ink may reach out of its line.
constexpr double inkReach = 8.0;
constexpr double spacesForATab = 8.0;
/// The text engine's places are multiples of 1/64.
constexpr double touchingDistance = 1.0 / 32.0;

double layoutFontSize(double fontSize) {
    if (!(fontSize > smallestLayoutSize)) return smallestLayoutSize;
    return std::min(std::round(fontSize), largestLayoutSize);
}

double scaleOf(double fontSize) {
    if (!(fontSize > 0.0) || !std::isfinite(fontSize)) return 0.0;
    const double size = std::min(fontSize, largestFontSize);
    return size / layoutFontSize(size);
}

Qt::Alignment qtAlignment(model::CanvasTextAlignment alignment) {
    switch (alignment) {
        case model::CanvasTextAlignment::left:
            return Qt::AlignLeft | Qt::AlignAbsolute;
        case model::CanvasTextAlignment::center:
            return Qt::AlignHCenter;
        case model::CanvasTextAlignment::right:
            return Qt::AlignRight | Qt::AlignAbsolute;
    }
    return Qt::AlignLeft | Qt::AlignAbsolute;
}

QTextOption textOption(const TextStyle& style, const QFont& font) {
    QTextOption option(qtAlignment(style.alignment));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setUseDesignMetrics(true);
    option.setTabStopDistance(spacesForATab *
                              QFontMetricsF(font).horizontalAdvance(QLatin1Char(' ')));
    return option;
}

bool endsParagraph(QChar c) {
    return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::ParagraphSeparator;
}

/// The units of the break at `at`.
int breakLength(QStringView text, int at) {
    const bool isPair =
        text[at] == QLatin1Char('\r') && at + 1 < text.size() && text[at + 1] == QLatin1Char('\n');
    return isPair ? 2 : 1;
}

/// A part of a line.
struct TextSpan {
    double left = 0.0;
    double right = 0.0;
};

std::vector<TextSpan> spansOf(const std::vector<TextCell>& cells, TextRange range) {
    std::vector<TextSpan> spans;
    for (const TextCell& cell : cells) {
        if (cell.end > range.start && cell.start < range.end)
            spans.push_back({cell.left(), cell.right()});
    }
    return spans;
}

/// The spans from left to right, those that touch as one.
std::vector<TextSpan> merged(std::vector<TextSpan> spans) {
    std::ranges::sort(spans, {}, &TextSpan::left);
    std::vector<TextSpan> result;
    for (const TextSpan& span : spans) {
        if (!result.empty() && span.left <= result.back().right + touchingDistance) {
            result.back().right = std::max(result.back().right, span.right);
        } else {
            result.push_back(span);
        }
    }
    return result;
}

} // namespace

struct TextLayout::Paragraph {
    /// Of the whole text.
    TextRange range;
    std::unique_ptr<QTextLayout> layout;

    bool isRightToLeft() const { return layout->text().isRightToLeft(); }
};

struct TextLayout::Line {
    std::size_t paragraph;
    QTextLine line;
};

TextLayout::~TextLayout() = default;
TextLayout::TextLayout(TextLayout&&) noexcept = default;
TextLayout& TextLayout::operator=(TextLayout&&) noexcept = default;

TextLayout::TextLayout(const QString& text, const TextStyle& style, double width)
    : m_text(text), m_style(style), m_width(width), m_scale(scaleOf(style.fontSize)) {
    const QStringView all = m_text;
    int start = 0;
    for (int at = 0; at < all.size();) {
        if (!endsParagraph(all[at])) {
            ++at;
            continue;
        }
        addParagraph(all.sliced(start, at - start), start);
        at += breakLength(all, at);
        start = at;
    }
    addParagraph(all.sliced(start), start);
}

void TextLayout::addParagraph(QStringView text, int start) {
    const QFont font = m_paragraphs.empty()
                           ? textFont(m_style, static_cast<int>(layoutFontSize(m_style.fontSize)))
                           : m_paragraphs.front().layout->font();
    auto layout = std::make_unique<QTextLayout>(text.toString(), font);
    layout->setTextOption(textOption(m_style, font));
    layout->setCacheEnabled(true);
    const double lineWidth = std::max(layoutLength(m_width), 1.0);
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(lineWidth);
        line.setPosition({0.0, m_layoutHeight + baselineShift(m_layoutHeight, line.ascent())});
        m_layoutHeight += line.height();
        m_lines.push_back({m_paragraphs.size(), line});
    }
    layout->endLayout();
    m_paragraphs.push_back({{start, start + static_cast<int>(text.size())}, std::move(layout)});
}

/// What a line whose top would be at `top` is moved by for its baseline to be on a whole pixel.
double TextLayout::baselineShift(double top, double ascent) const {
    if (m_scale == 0.0) return 0.0;
    const double baseline = (top + ascent) * m_scale;
    return (std::round(baseline) - baseline) / m_scale;
}

double TextLayout::layoutLength(double boxLength) const {
    if (m_scale == 0.0 || std::isnan(boxLength)) return 0.0;
    return std::clamp(boxLength / m_scale, -largestLayoutLength, largestLayoutLength);
}

QRectF TextLayout::boxRect(const QRectF& layoutRect) const {
    return {layoutRect.topLeft() * m_scale, layoutRect.size() * m_scale};
}

double TextLayout::textHeight() const {
    return std::clamp(std::ceil(m_layoutHeight * m_scale), 1.0, maximumTextHeight);
}

void TextLayout::draw(QPainter& painter, QPointF topLeft, const QColor& color,
                      const QRectF& clip) const {
    if (m_scale == 0.0) return;
    painter.save();
    painter.translate(topLeft);
    painter.scale(m_scale, m_scale);
    painter.setPen(color);
    for (const Line& line : m_lines) {
        const double reach = inkReach * line.line.height();
        const QRectF ink =
            boxRect(line.line.naturalTextRect().adjusted(-reach, -reach, reach, reach));
        if (ink.translated(topLeft).intersects(clip)) line.line.draw(&painter, {0.0, 0.0});
    }
    painter.restore();
}

// Lines

const TextLayout::Paragraph& TextLayout::paragraphOf(const Line& line) const {
    return m_paragraphs[line.paragraph];
}

int TextLayout::lineCount() const {
    return static_cast<int>(m_lines.size());
}

QRectF TextLayout::lineRect(int line) const {
    const QTextLine& found = m_lines[static_cast<std::size_t>(line)].line;
    return boxRect({found.x(), found.y(), found.width(), found.height()});
}

TextRange TextLayout::lineRange(int line) const {
    const Line& found = m_lines[static_cast<std::size_t>(line)];
    const Paragraph& paragraph = paragraphOf(found);
    const int start = found.line.textStart();
    int end = start + found.line.textLength();
    const bool isLast = found.line.lineNumber() + 1 == paragraph.layout->lineCount();
    if (!isLast) end = std::max(start, paragraph.layout->previousCursorPosition(end));
    return {paragraph.range.start + start, paragraph.range.start + end};
}

int TextLayout::lineOf(int position) const {
    const auto after = std::ranges::upper_bound(
        m_lines, std::max(position, 0), {},
        [this](const Line& line) { return paragraphOf(line).range.start + line.line.textStart(); });
    return static_cast<int>(after - m_lines.begin()) - 1;
}

int TextLayout::lineAt(double y) const {
    const double height = layoutLength(y);
    const auto after = std::ranges::upper_bound(m_lines, height, {},
                                                [](const Line& line) { return line.line.y(); });
    return std::max(static_cast<int>(after - m_lines.begin()) - 1, 0);
}

// Carets

QRectF TextLayout::caretRect(int position) const {
    const Line& found = m_lines[static_cast<std::size_t>(lineOf(position))];
    const Paragraph& paragraph = paragraphOf(found);
    const QTextLine& line = found.line;
    const int held = std::clamp(position, paragraph.range.start, paragraph.range.end);
    const double x = caretPlace(textCells(*paragraph.layout, line), held - paragraph.range.start,
                                paragraph.isRightToLeft(), line.naturalTextRect().x());
    return boxRect({x, line.y(), 0.0, line.height()});
}

int TextLayout::positionAt(QPointF point) const {
    return positionOnLine(lineAt(point.y()), point.x());
}

int TextLayout::positionOnLine(int line, double x) const {
    const Line& found = m_lines[static_cast<std::size_t>(line)];
    const Paragraph& paragraph = paragraphOf(found);
    const TextRange range = lineRange(line);
    const int index = caretIndex(textCells(*paragraph.layout, found.line), layoutLength(x),
                                 found.line.textStart());
    return std::clamp(paragraph.range.start + index, range.start, range.end);
}

int TextLayout::paragraphAt(int position) const {
    const auto after =
        std::ranges::upper_bound(m_paragraphs, std::max(position, 0), {},
                                 [](const Paragraph& paragraph) { return paragraph.range.start; });
    return static_cast<int>(after - m_paragraphs.begin()) - 1;
}

bool TextLayout::isRightToLeftAt(int position) const {
    return m_paragraphs[static_cast<std::size_t>(paragraphAt(position))].isRightToLeft();
}

int TextLayout::nextPosition(int position, TextStep step) const {
    const auto index = static_cast<std::size_t>(paragraphAt(position));
    const Paragraph& paragraph = m_paragraphs[index];
    if (position >= paragraph.range.end) {
        return index + 1 < m_paragraphs.size() ? m_paragraphs[index + 1].range.start
                                               : paragraph.range.end;
    }
    const int local = std::max(position, 0) - paragraph.range.start;
    return paragraph.range.start + paragraph.layout->nextCursorPosition(
                                       local, step == TextStep::word ? QTextLayout::SkipWords
                                                                     : QTextLayout::SkipCharacters);
}

int TextLayout::previousPosition(int position, TextStep step) const {
    const auto index = static_cast<std::size_t>(paragraphAt(position));
    const Paragraph& paragraph = m_paragraphs[index];
    if (position <= paragraph.range.start) {
        return index > 0 ? m_paragraphs[index - 1].range.end : paragraph.range.start;
    }
    const int local = std::min(position, paragraph.range.end) - paragraph.range.start;
    return paragraph.range.start + paragraph.layout->previousCursorPosition(
                                       local, step == TextStep::word ? QTextLayout::SkipWords
                                                                     : QTextLayout::SkipCharacters);
}

std::vector<QRectF> TextLayout::selectionRects(TextRange range) const {
    std::vector<QRectF> rects;
    if (range.start >= range.end) return rects;
    const int last = lineOf(range.end);
    for (int line = lineOf(range.start); line <= last; ++line)
        addLineSelection(m_lines[static_cast<std::size_t>(line)], range, rects);
    return rects;
}

/// `range` is not empty.
void TextLayout::addLineSelection(const Line& line, TextRange range,
                                  std::vector<QRectF>& rects) const {
    const Paragraph& paragraph = paragraphOf(line);
    const std::vector<TextCell> cells = textCells(*paragraph.layout, line.line);
    const int start = paragraph.range.start;
    std::vector<TextSpan> spans = spansOf(cells, {range.start - start, range.end - start});
    const bool endsParagraph =
        start + line.line.textStart() + line.line.textLength() == paragraph.range.end;
    const bool holdsBreak = range.start <= paragraph.range.end && range.end > paragraph.range.end;
    if (endsParagraph && holdsBreak) {
        const double space =
            QFontMetricsF(paragraph.layout->font()).horizontalAdvance(QLatin1Char(' '));
        const double edge = cells.empty() ? line.line.naturalTextRect().x() : cells.back().trailing;
        spans.push_back(paragraph.isRightToLeft() ? TextSpan{edge - space, edge}
                                                  : TextSpan{edge, edge + space});
    }
    for (const TextSpan& span : merged(std::move(spans))) {
        const QRectF rect =
            boxRect({span.left, line.line.y(), span.right - span.left, line.line.height()});
        if (!rect.isEmpty()) rects.push_back(rect);
    }
}

} // namespace quillabrae::raster
