// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QInputMethodEvent;
class QKeyEvent;

namespace quillabrae::canvas {

class TextDraft;

/// Whether a key is the text draft's, rather than a shortcut of the window.
bool isTextKey(const QKeyEvent& event);

/// Types, moves the caret, or does what the desktop's key for it says, the clipboard included.
/// Whether the key was taken. Only with a draft.
bool applyTextKey(TextDraft& draft, const QKeyEvent& event);

/// What an input method composes, and what it has composed. Only with a draft.
void applyInputMethod(TextDraft& draft, const QInputMethodEvent& event);

} // namespace quillabrae::canvas
