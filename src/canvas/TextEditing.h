// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/TextLayout.h"

#include <QString>

#include <optional>
#include <vector>

namespace quillabrae::canvas {

/// Where a key moves the caret.
enum class CaretMove {
    left,
    right,
    up,
    down,
    wordLeft,
    wordRight,
    lineStart,
    lineEnd,
    textStart,
    textEnd,
};

/// Whether the selection's other end stays where it is.
enum class SelectionEnd { follows, stays };

enum class DeleteDirection { backward, forward };

/// A text under edit: its caret and selection, the history of its changes, and what an input method
/// is still composing. Positions are indices of UTF-16 units; the layouts that it is given are of
/// `shownText()`.
class TextEditing {
public:
    const QString& text() const { return m_state.text; }
    int caret() const { return m_state.caret; }
    /// In the order of the text; empty at the caret without a selection.
    raster::TextRange selection() const;
    QString selectedText() const;

    /// Puts a text in the selection's place. Line breaks become "\n".
    void insert(const QString& typed);
    /// The selection, or without one the character or word beside the caret.
    void remove(DeleteDirection direction, raster::TextStep step, const raster::TextLayout& layout);
    void selectAll();
    void move(CaretMove move, SelectionEnd end, const raster::TextLayout& layout);
    /// To a point of the box, in canvas pixels.
    void moveTo(QPointF point, SelectionEnd end, const raster::TextLayout& layout);
    void selectWordAt(QPointF point, const raster::TextLayout& layout);

    bool canUndo() const { return !m_undo.empty(); }
    bool canRedo() const { return !m_redo.empty(); }
    void undo();
    void redo();

    // What an input method composes stands at the caret, in no way part of the text yet.

    /// `caret`: within the preedit text.
    void setPreedit(const QString& preedit, int caret);
    const QString& preedit() const { return m_preedit; }
    /// What is composed becomes part of the text.
    void commitPreedit();
    /// The text as it shows.
    QString shownText() const;
    int shownCaret() const { return m_state.caret + m_preeditCaret; }

private:
    struct State {
        QString text;
        int caret = 0;
        /// The selection's other end.
        int anchor = 0;
    };

    void remember(bool isTyping);
    void replaceSelection(const QString& replacement);
    void setCaret(int position, SelectionEnd end);
    int destination(CaretMove move, const raster::TextLayout& layout);

    State m_state;
    std::vector<State> m_undo;
    std::vector<State> m_redo;
    /// Typed characters that follow each other are undone together.
    bool m_isTyping = false;
    /// Where moves from line to line aim at.
    std::optional<double> m_aim;
    QString m_preedit;
    int m_preeditCaret = 0;
};

} // namespace quillabrae::canvas
