// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

#include <functional>

class QLabel;
class QWidget;

/// What is measured by letters, and grows with them when the user changes their size.
namespace quillabrae::shell::TextSize {

/// Calls `fit` now and whenever the widget's font has changed, for as long as it lives.
void follow(QWidget& widget, std::function<void()> fit);

/// A width or height that was chosen for letters of the usual size, in points, for the widget's
/// letters: larger where those are larger, never smaller.
int scaled(int points, const QWidget& widget);

/// The same as a fixed width that stays right.
void setFixedWidth(QWidget& widget, int points);

/// The height of `lines` lines of the widget's letters with some air, `least` at least.
int rowHeight(const QWidget& widget, int least, int lines = 1);

/// Keeps a label's letters at `factor` times the size of the program's.
void scaleFont(QLabel& label, qreal factor);

/// How large a window may be so that it and its frame fit on its screen.
QSize roomFor(const QWidget& window);

/// Calls `fit` now, and whenever the window has other letters or comes to another screen.
void followRoom(QWidget& window, std::function<void()> fit);

/// Keeps a window of fixed size as large as its contents need, `least` at least, and within its
/// screen. What may have to do with less room has a `BodyScroller` about it. A window that grows
/// beyond an edge of its screen, frame included, is moved back, unless it is maximized or full
/// screen.
void fixSize(QWidget& window, QSize least);
/// Lets a window of any size be no smaller than its contents need, nor than `least`, where its
/// screen has room for that. It is moved likewise.
void limitSize(QWidget& window, QSize least);

} // namespace quillabrae::shell::TextSize
