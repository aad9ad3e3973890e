// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

class QTextLayout;
class QTextLine;

namespace quillabrae::raster {

/// The place on its line of what shows as one character.
struct TextCell {
    /// Indices into the layout's text.
    int start = 0;
    int end = 0;
    /// Where its character begins and ends, in the direction it is read.
    double leading = 0.0;
    double trailing = 0.0;
    bool isRightToLeft = false;

    double left() const { return isRightToLeft ? trailing : leading; }
    double right() const { return isRightToLeft ? leading : trailing; }
};

/// The cells of a line in the order of its text.
std::vector<TextCell> textCells(const QTextLayout& layout, const QTextLine& line);

/// Where the caret before the character at `index` stands, or behind the last one. Between two
/// directions it stands at the character of the paragraph's own.
double caretPlace(const std::vector<TextCell>& cells, int index, bool isRightToLeftParagraph,
                  double emptyPlace);

/// The index of the caret nearest to `x`; that of an empty line is `emptyIndex`.
int caretIndex(const std::vector<TextCell>& cells, double x, int emptyIndex);

} // namespace quillabrae::raster
