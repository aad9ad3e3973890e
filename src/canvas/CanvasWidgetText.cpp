// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidgetText.h"

#include "canvas/TextDraft.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QKeySequence>

#include <algorithm>
#include <array>

namespace quillabrae::canvas {
namespace {

using raster::TextLayout;
using raster::TextStep;

struct MoveRow {
    QKeySequence::StandardKey move;
    QKeySequence::StandardKey select;
    CaretMove where;
};

constexpr std::array<MoveRow, 10> moves{{
    {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, CaretMove::left},
    {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, CaretMove::right},
    {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, CaretMove::up},
    {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, CaretMove::down},
    {QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, CaretMove::wordLeft},
    {QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, CaretMove::wordRight},
    {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, CaretMove::lineStart},
    {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, CaretMove::lineEnd},
    {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument,
     CaretMove::textStart},
    {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, CaretMove::textEnd},
}};

void copy(const TextEditing& editing) {
    if (!editing.selectedText().isEmpty())
        QGuiApplication::clipboard()->setText(editing.selectedText());
}

struct EditRow {
    QKeySequence::StandardKey key;
    void (*run)(TextEditing& editing, const TextLayout& layout);
};

constexpr std::array<EditRow, 11> edits{{
    {QKeySequence::SelectAll, [](TextEditing& e, const TextLayout&) { e.selectAll(); }},
    {QKeySequence::Copy, [](TextEditing& e, const TextLayout&) { copy(e); }},
    {QKeySequence::Cut,
     [](TextEditing& e, const TextLayout&) {
         copy(e);
         e.insert(QString());
     }},
    {QKeySequence::Paste,
     [](TextEditing& e, const TextLayout&) { e.insert(QGuiApplication::clipboard()->text()); }},
    {QKeySequence::Undo, [](TextEditing& e, const TextLayout&) { e.undo(); }},
    {QKeySequence::Redo, [](TextEditing& e, const TextLayout&) { e.redo(); }},
    {QKeySequence::Delete,
     [](TextEditing& e, const TextLayout& l) {
         e.remove(DeleteDirection::forward, TextStep::character, l);
     }},
    {QKeySequence::DeleteStartOfWord,
     [](TextEditing& e, const TextLayout& l) {
         e.remove(DeleteDirection::backward, TextStep::word, l);
     }},
    {QKeySequence::DeleteEndOfWord,
     [](TextEditing& e, const TextLayout& l) {
         e.remove(DeleteDirection::forward, TextStep::word, l);
     }},
    {QKeySequence::InsertParagraphSeparator,
     [](TextEditing& e, const TextLayout&) { e.insert(QStringLiteral("\n")); }},
    {QKeySequence::InsertLineSeparator,
     [](TextEditing& e, const TextLayout&) { e.insert(QStringLiteral("\n")); }},
}};

/// Not a standard key of every desktop.
bool isBackspace(const QKeyEvent& event) {
    return event.key() == Qt::Key_Backspace && !event.modifiers().testFlag(Qt::ControlModifier) &&
           !event.modifiers().testFlag(Qt::AltModifier);
}

bool typesText(const QKeyEvent& event) {
    const bool isCommand = event.modifiers().testFlag(Qt::ControlModifier) !=
                           event.modifiers().testFlag(Qt::AltModifier);
    const QString text = event.text();
    return !isCommand && !text.isEmpty() &&
           (text.front().isPrint() || text.front() == QLatin1Char('\t') ||
            text.front().isSurrogate());
}

} // namespace

bool isTextKey(const QKeyEvent& event) {
    return typesText(event) || isBackspace(event) ||
           std::ranges::any_of(moves,
                               [&](const MoveRow& row) {
                                   return event.matches(row.move) || event.matches(row.select);
                               }) ||
           std::ranges::any_of(edits, [&](const EditRow& row) { return event.matches(row.key); });
}

bool applyTextKey(TextDraft& draft, const QKeyEvent& event) {
    if (!isTextKey(event)) return false;
    draft.edit([&](TextEditing& editing, const TextLayout& layout) {
        for (const MoveRow& row : moves) {
            if (event.matches(row.move))
                return editing.move(row.where, SelectionEnd::follows, layout);
            if (event.matches(row.select))
                return editing.move(row.where, SelectionEnd::stays, layout);
        }
        for (const EditRow& row : edits) {
            if (event.matches(row.key)) return row.run(editing, layout);
        }
        if (isBackspace(event))
            return editing.remove(DeleteDirection::backward, TextStep::character, layout);
        editing.insert(event.text());
    });
    return true;
}

void applyInputMethod(TextDraft& draft, const QInputMethodEvent& event) {
    int caret = static_cast<int>(event.preeditString().size());
    for (const QInputMethodEvent::Attribute& attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor) caret = attribute.start;
    }
    draft.edit([&](TextEditing& editing, const TextLayout&) {
        editing.setPreedit(QString(), 0);
        editing.insert(event.commitString());
        editing.setPreedit(event.preeditString(), caret);
    });
}

} // namespace quillabrae::canvas
