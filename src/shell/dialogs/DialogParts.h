// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QDialog;
class QGridLayout;
class QHBoxLayout;
class QVBoxLayout;
class QWidget;

namespace quillabrae::shell {

class NumberField;

/// What the dialogs are put together from.
namespace DialogParts {

/// The column of a dialog or of a page of one, within its margins. It scrolls where the dialog gets
/// less room than it needs.
QVBoxLayout* makeBody(QWidget& dialog, int spacing);
/// The same headed by the dialog's window title.
QVBoxLayout* makeColumn(QWidget& dialog, int spacing);

/// Rows of a title, a control and what follows it; ended by `addNumber` and its like.
QGridLayout* addGrid(QVBoxLayout& column);

/// A field for a number with its title before ("Width:") and its unit behind it.
NumberField* addNumber(QGridLayout& grid, const QString& title, QWidget* unit);
NumberField* addNumber(QGridLayout& grid, const QString& title, const QString& unit);

/// Puts buttons under the body, where they are always in sight.
void addButtons(QWidget& dialog, QHBoxLayout* row);
/// Cancel, and the button of the likeliest choice, named "accept", which Return presses. They end
/// the dialog.
void addButtons(QDialog& dialog, const QString& acceptTitle);

} // namespace DialogParts
} // namespace quillabrae::shell
