// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

/// What the clipboard's commands mean to a text field.
namespace quillabrae::shell::FocusedText {

/// Calls a slot such as "paste()" of a text control, also where the text is a part of the control.
/// Nothing for a null widget or one that has no such slot.
void invoke(QWidget* control, const char* slot);

/// Whether the control is one that text is typed into; false for a null widget.
bool isIn(const QWidget* control);

} // namespace quillabrae::shell::FocusedText
