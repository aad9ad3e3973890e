// SPDX-License-Identifier: GPL-3.0-or-later
// A line's text reads in runs of one direction. The glyphs of a run give its extent and the width
// of each character in it. The text engine's own places of carets are not used where there are
// glyphs: at the ends of a run it answers with the neighbouring run's edge, and on lines that were
// broken in right-to-left text it is off by the space that hangs over the edge.
#include "raster/TextCells.h"

#include <QGlyphRun>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <span>
#include <tuple>
#include <utility>

namespace quillabrae::raster {
namespace {

/// A character's cell before its place is known.
struct Character {
    TextCell cell;
    double width = 0.0;
    /// Tabs and the spaces that a line was broken at have no glyphs.
    bool hasGlyphs = false;
};

QRectF extentOf(const QList<QGlyphRun>& glyphs) {
    QRectF extent;
    for (const QGlyphRun& run : glyphs) {
        const QRectF rect = run.boundingRect();
        extent = extent.isNull() ? rect : extent.united(rect);
    }
    return extent;
}

std::vector<Character> charactersOf(const QTextLayout& layout, const QTextLine& line) {
    std::vector<Character> characters;
    const int lineEnd = line.textStart() + line.textLength();
    for (int at = line.textStart(); at < lineEnd;) {
        const int next = std::clamp(layout.nextCursorPosition(at), at + 1, lineEnd);
        const QList<QGlyphRun> glyphs = line.glyphRuns(at, next - at);
        Character character{.cell = {.start = at, .end = next},
                            .width = extentOf(glyphs).width(),
                            .hasGlyphs = !glyphs.isEmpty()};
        character.cell.isRightToLeft = character.hasGlyphs && glyphs.first().isRightToLeft();
        characters.push_back(character);
        at = next;
    }
    return characters;
}

void placeWithoutGlyphs(Character& character, const QTextLine& line, int lineEnd) {
    TextCell& cell = character.cell;
    const double from = line.cursorToX(cell.start);
    const double to = cell.end < lineEnd ? line.cursorToX(cell.end)
                                         : line.cursorToX(cell.end - 1, QTextLine::Trailing);
    std::tie(cell.leading, cell.trailing) = std::minmax(from, to);
}

void placeRun(std::span<Character> run, const QTextLine& line) {
    const int start = run.front().cell.start;
    const QRectF extent = extentOf(line.glyphRuns(start, run.back().cell.end - start));
    const bool isRightToLeft = run.front().cell.isRightToLeft;
    double place = isRightToLeft ? extent.right() : extent.left();
    for (Character& character : run) {
        character.cell.leading = place;
        place += isRightToLeft ? -character.width : character.width;
        character.cell.trailing = place;
    }
}

bool isOneRun(const Character& a, const Character& b) {
    return a.hasGlyphs && b.hasGlyphs && a.cell.isRightToLeft == b.cell.isRightToLeft;
}

} // namespace

std::vector<TextCell> textCells(const QTextLayout& layout, const QTextLine& line) {
    std::vector<Character> characters = charactersOf(layout, line);
    const int lineEnd = line.textStart() + line.textLength();
    const std::span<Character> all = characters;
    for (std::size_t first = 0; first < all.size();) {
        std::size_t last = first + 1;
        while (last < all.size() && isOneRun(all[first], all[last])) ++last;
        if (all[first].hasGlyphs) {
            placeRun(all.subspan(first, last - first), line);
        } else {
            placeWithoutGlyphs(all[first], line, lineEnd);
        }
        first = last;
    }
    std::vector<TextCell> cells;
    std::ranges::transform(characters, std::back_inserter(cells), &Character::cell);
    return cells;
}

double caretPlace(const std::vector<TextCell>& cells, int index, bool isRightToLeftParagraph,
                  double emptyPlace) {
    if (cells.empty()) return emptyPlace;
    const auto next =
        std::ranges::find_if(cells, [index](const TextCell& cell) { return cell.end > index; });
    if (next == cells.end()) return cells.back().trailing;
    if (next == cells.begin()) return next->leading;
    const TextCell& previous = *std::prev(next);
    const bool standsBehindPrevious = previous.isRightToLeft != next->isRightToLeft &&
                                      previous.isRightToLeft == isRightToLeftParagraph;
    return standsBehindPrevious ? previous.trailing : next->leading;
}

int caretIndex(const std::vector<TextCell>& cells, double x, int emptyIndex) {
    if (cells.empty()) return emptyIndex;
    const auto distance = [x](const TextCell& cell) {
        return std::max({cell.left() - x, x - cell.right(), 0.0});
    };
    const auto nearest = std::ranges::min_element(cells, {}, distance);
    return std::abs(x - nearest->leading) <= std::abs(x - nearest->trailing) ? nearest->start
                                                                             : nearest->end;
}

} // namespace quillabrae::raster
