// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QListView;
class QPainter;
class QPalette;
class QRectF;

/// What the panels' lists have in common.
namespace quillabrae::shell::RowList {

enum class Face { plain, underPointer, chosen };

/// Makes a list of rows of equal height that the store chooses from: frameless, scrolled by points,
/// reached with the Tab key, while a press leaves the keyboard where it is.
void prepare(QListView& list);

/// The ground of a row, under its content.
void paintFace(QPainter& painter, const QRectF& rect, Face face, const QPalette& palette);

} // namespace quillabrae::shell::RowList
