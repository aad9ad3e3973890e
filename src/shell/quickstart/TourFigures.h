// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

/// What the tour shows of the program's own tables.
namespace quillabrae::shell::TourFigures {

/// Every tool of the palette with its icon and title.
QWidget* makeTools(QWidget* parent);

/// The shortcuts that differ from Paint.NET's, then those that are the same.
QWidget* makeShortcuts(QWidget* parent);

} // namespace quillabrae::shell::TourFigures
