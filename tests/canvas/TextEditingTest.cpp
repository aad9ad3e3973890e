// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/TextEditing.h"

#include <gtest/gtest.h>

namespace quillabrae::canvas {
namespace {

using raster::TextLayout;
using raster::TextRange;
using raster::TextStep;

/// An editor with a layout of its text, in a box eight letters wide.
class Editing : public testing::Test {
protected:
    TextLayout layout() const {
        raster::TextStyle style;
        style.fontFamily = QStringLiteral("DejaVu Sans Mono");
        style.fontSize = 20.0;
        return TextLayout(editing.shownText(), style, 8.5 * 20.0 * 1233.0 / 2048.0);
    }
    void move(CaretMove move, SelectionEnd end = SelectionEnd::follows) {
        editing.move(move, end, layout());
    }
    void backspace(TextStep step = TextStep::character) {
        editing.remove(DeleteDirection::backward, step, layout());
    }
    void type(const char* text) {
        for (const QChar c : QString::fromUtf8(text)) editing.insert(QString(c));
    }

    TextEditing editing;
};

TEST_F(Editing, TypedTextStandsAtTheCaret) {
    type("ac");
    move(CaretMove::left);
    type("b");
    EXPECT_EQ(editing.text(), QStringLiteral("abc"));
    EXPECT_EQ(editing.caret(), 2);
}

TEST_F(Editing, LineBreaksBecomePlainOnes) {
    editing.insert(QStringLiteral("a\r\nb\rc\nd"));
    EXPECT_EQ(editing.text(), QStringLiteral("a\nb\nc\nd"));
}

TEST_F(Editing, TypingReplacesTheSelection) {
    type("one two");
    editing.move(CaretMove::wordLeft, SelectionEnd::stays, layout());
    EXPECT_EQ(editing.selectedText(), QStringLiteral("two"));
    type("3");
    EXPECT_EQ(editing.text(), QStringLiteral("one 3"));
    editing.selectAll();
    EXPECT_EQ(editing.selection(), (TextRange{0, 5}));
    editing.insert(QString());
    EXPECT_EQ(editing.text(), QString());
}

TEST_F(Editing, DeletesWholeCharactersAndWords) {
    editing.insert(QString::fromUtf8("one \U0001F600e\u0301"));
    backspace();
    EXPECT_EQ(editing.text(), QString::fromUtf8("one \U0001F600"));
    backspace();
    EXPECT_EQ(editing.text(), QStringLiteral("one "));
    backspace(TextStep::word);
    EXPECT_EQ(editing.text(), QString());
    backspace();
    EXPECT_EQ(editing.text(), QString());
    type("ab");
    move(CaretMove::textStart);
    editing.remove(DeleteDirection::forward, TextStep::character, layout());
    EXPECT_EQ(editing.text(), QStringLiteral("b"));
}

TEST_F(Editing, MovesByCharacterWordLineAndText) {
    editing.insert(QStringLiteral("one two three\nx"));
    // Lines: "one two ", "three", "x".
    struct Row {
        CaretMove move;
        int caret;
    };
    for (const Row& row :
         {Row{CaretMove::textStart, 0}, Row{CaretMove::right, 1}, Row{CaretMove::wordRight, 4},
          Row{CaretMove::lineEnd, 7}, Row{CaretMove::lineStart, 0}, Row{CaretMove::textEnd, 15},
          Row{CaretMove::left, 14}, Row{CaretMove::left, 13}, Row{CaretMove::wordLeft, 8},
          Row{CaretMove::lineEnd, 13}}) {
        move(row.move);
        EXPECT_EQ(editing.caret(), row.caret) << static_cast<int>(row.move);
    }
}

TEST_F(Editing, MovesFromLineToLineTowardsTheSamePlace) {
    editing.insert(QStringLiteral("abcdef\nx\nabcdef"));
    move(CaretMove::textStart);
    for (int i = 0; i < 4; ++i) move(CaretMove::right);
    move(CaretMove::down);
    EXPECT_EQ(editing.caret(), 8);
    move(CaretMove::down);
    EXPECT_EQ(editing.caret(), 13);
    move(CaretMove::down);
    EXPECT_EQ(editing.caret(), 15);
    move(CaretMove::up);
    EXPECT_EQ(editing.caret(), 8);
    move(CaretMove::up);
    move(CaretMove::up);
    EXPECT_EQ(editing.caret(), 0);
}

TEST_F(Editing, LeavesASelectionAtItsEnd) {
    type("abcd");
    editing.selectAll();
    move(CaretMove::left);
    EXPECT_EQ(editing.selection(), (TextRange{0, 0}));
    editing.selectAll();
    move(CaretMove::right);
    EXPECT_EQ(editing.selection(), (TextRange{4, 4}));
}

TEST_F(Editing, ArrowsFollowTheDirectionOfTheParagraph) {
    editing.insert(QString::fromUtf8("\u05e9\u05dc\u05d5"));
    move(CaretMove::textStart);
    move(CaretMove::left);
    EXPECT_EQ(editing.caret(), 1);
    move(CaretMove::right);
    EXPECT_EQ(editing.caret(), 0);
}

TEST_F(Editing, SelectsAWordWithoutItsSpace) {
    editing.insert(QStringLiteral("one two"));
    editing.selectWordAt({15, 10}, layout());
    EXPECT_EQ(editing.selectedText(), QStringLiteral("one"));
    editing.selectWordAt({60, 10}, layout());
    EXPECT_EQ(editing.selectedText(), QStringLiteral("two"));
    editing.selectWordAt({5000, 10}, layout());
    EXPECT_EQ(editing.selectedText(), QStringLiteral("two"));
}

TEST_F(Editing, UndoesTypingAsAWholeAndOtherChangesOneByOne) {
    type("abc");
    editing.insert(QStringLiteral("pasted"));
    backspace();
    EXPECT_EQ(editing.text(), QStringLiteral("abcpaste"));
    editing.undo();
    EXPECT_EQ(editing.text(), QStringLiteral("abcpasted"));
    editing.undo();
    EXPECT_EQ(editing.text(), QStringLiteral("abc"));
    editing.undo();
    EXPECT_EQ(editing.text(), QString());
    EXPECT_FALSE(editing.canUndo());
    editing.redo();
    editing.redo();
    EXPECT_EQ(editing.text(), QStringLiteral("abcpasted"));
    type("!");
    EXPECT_FALSE(editing.canRedo());
    editing.undo();
    EXPECT_EQ(editing.text(), QStringLiteral("abcpasted"));
}

TEST_F(Editing, WhatIsComposedShowsWithoutBeingText) {
    type("ab");
    move(CaretMove::left);
    editing.setPreedit(QStringLiteral("xyz"), 2);
    EXPECT_EQ(editing.shownText(), QStringLiteral("axyzb"));
    EXPECT_EQ(editing.shownCaret(), 3);
    EXPECT_EQ(editing.text(), QStringLiteral("ab"));
    editing.setPreedit(QString(), 0);
    EXPECT_EQ(editing.shownText(), QStringLiteral("ab"));
    editing.setPreedit(QStringLiteral("w"), 1);
    editing.commitPreedit();
    EXPECT_EQ(editing.text(), QStringLiteral("awb"));
    EXPECT_EQ(editing.caret(), 2);
    editing.undo();
    EXPECT_EQ(editing.text(), QStringLiteral("ab"));
}

} // namespace
} // namespace quillabrae::canvas
