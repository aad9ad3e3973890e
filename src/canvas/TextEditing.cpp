// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/TextEditing.h"

#include <algorithm>
#include <utility>

namespace quillabrae::canvas {

using raster::TextLayout;
using raster::TextRange;
using raster::TextStep;

namespace {

QString withPlainBreaks(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

int stepped(const TextLayout& layout, int position, TextStep step, bool isForward) {
    return isForward ? layout.nextPosition(position, step)
                     : layout.previousPosition(position, step);
}

} // namespace

TextRange TextEditing::selection() const {
    return {std::min(m_state.caret, m_state.anchor), std::max(m_state.caret, m_state.anchor)};
}

QString TextEditing::selectedText() const {
    const TextRange range = selection();
    return m_state.text.mid(range.start, range.end - range.start);
}

void TextEditing::remember(bool isTyping) {
    if (!isTyping || !m_isTyping) m_undo.push_back(m_state);
    m_isTyping = isTyping;
    m_redo.clear();
    m_aim.reset();
}

void TextEditing::replaceSelection(const QString& replacement) {
    const TextRange range = selection();
    m_state.text.replace(range.start, range.end - range.start, replacement);
    m_state.caret = range.start + static_cast<int>(replacement.size());
    m_state.anchor = m_state.caret;
}

void TextEditing::insert(const QString& typed) {
    const QString plain = withPlainBreaks(typed);
    const bool hasSelection = m_state.caret != m_state.anchor;
    if (plain.isEmpty() && !hasSelection) return;
    // A break, and what replaces something or comes as a whole, can be undone for itself.
    remember(!hasSelection && plain.size() <= 2 && !plain.contains(QLatin1Char('\n')));
    replaceSelection(plain);
}

void TextEditing::remove(DeleteDirection direction, TextStep step, const TextLayout& layout) {
    if (m_state.caret == m_state.anchor) {
        const int end = stepped(layout, m_state.caret, step, direction == DeleteDirection::forward);
        if (end == m_state.caret) return;
        remember(false);
        m_state.anchor = end;
    } else {
        remember(false);
    }
    replaceSelection({});
}

void TextEditing::selectAll() {
    m_state.anchor = 0;
    setCaret(static_cast<int>(m_state.text.size()), SelectionEnd::stays);
}

void TextEditing::setCaret(int position, SelectionEnd end) {
    m_state.caret = position;
    if (end == SelectionEnd::follows) m_state.anchor = position;
    m_isTyping = false;
}

void TextEditing::move(CaretMove move, SelectionEnd end, const TextLayout& layout) {
    const bool isVertical = move == CaretMove::up || move == CaretMove::down;
    if (!isVertical) m_aim.reset();
    const TextRange range = selection();
    const bool leavesSelection = end == SelectionEnd::follows && range.start != range.end;
    if (leavesSelection && (move == CaretMove::left || move == CaretMove::right)) {
        const bool isForward = (move == CaretMove::right) != layout.isRightToLeftAt(m_state.caret);
        return setCaret(isForward ? range.end : range.start, end);
    }
    setCaret(destination(move, layout), end);
}

int TextEditing::destination(CaretMove move, const TextLayout& layout) {
    const int caret = m_state.caret;
    const int line = layout.lineOf(caret);
    const bool isMirrored = layout.isRightToLeftAt(caret);
    const auto vertical = [&](int target, int beyond) {
        if (target < 0 || target >= layout.lineCount()) return beyond;
        if (!m_aim) m_aim = layout.caretRect(caret).x();
        return layout.positionOnLine(target, *m_aim);
    };
    switch (move) {
        case CaretMove::left:
            return stepped(layout, caret, TextStep::character, isMirrored);
        case CaretMove::right:
            return stepped(layout, caret, TextStep::character, !isMirrored);
        case CaretMove::wordLeft:
            return stepped(layout, caret, TextStep::word, isMirrored);
        case CaretMove::wordRight:
            return stepped(layout, caret, TextStep::word, !isMirrored);
        case CaretMove::up:
            return vertical(line - 1, 0);
        case CaretMove::down:
            return vertical(line + 1, static_cast<int>(m_state.text.size()));
        case CaretMove::lineStart:
            return layout.lineRange(line).start;
        case CaretMove::lineEnd:
            return layout.lineRange(line).end;
        case CaretMove::textStart:
            return 0;
        case CaretMove::textEnd:
            return static_cast<int>(m_state.text.size());
    }
    return caret;
}

void TextEditing::moveTo(QPointF point, SelectionEnd end, const TextLayout& layout) {
    m_aim.reset();
    setCaret(layout.positionAt(point), end);
}

void TextEditing::selectWordAt(QPointF point, const TextLayout& layout) {
    const int at = layout.positionAt(point);
    const int next = layout.nextPosition(at, TextStep::word);
    m_state.anchor = std::min(at, layout.previousPosition(next, TextStep::word));
    int end = next;
    while (end > m_state.anchor && m_state.text[end - 1].isSpace()) --end;
    m_aim.reset();
    setCaret(end, SelectionEnd::stays);
}

void TextEditing::undo() {
    if (!canUndo()) return;
    m_redo.push_back(std::exchange(m_state, m_undo.back()));
    m_undo.pop_back();
    m_isTyping = false;
    m_aim.reset();
}

void TextEditing::redo() {
    if (!canRedo()) return;
    m_undo.push_back(std::exchange(m_state, m_redo.back()));
    m_redo.pop_back();
    m_isTyping = false;
    m_aim.reset();
}

void TextEditing::setPreedit(const QString& preedit, int caret) {
    if (!preedit.isEmpty() && m_state.caret != m_state.anchor) {
        remember(false);
        replaceSelection({});
    }
    m_preedit = preedit;
    m_preeditCaret = std::clamp(caret, 0, static_cast<int>(preedit.size()));
}

void TextEditing::commitPreedit() {
    const QString composed = std::exchange(m_preedit, {});
    m_preeditCaret = 0;
    insert(composed);
}

QString TextEditing::shownText() const {
    return QString(m_state.text).insert(m_state.caret, m_preedit);
}

} // namespace quillabrae::canvas
