// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QPainter;
class QPalette;
class QRect;

namespace quillabrae::shell {

/// The checker under small pictures: cells of 6 points from the area's top left, every other one a
/// faint wash of the text's colour.
void paintLabelChecker(QPainter& painter, const QRect& area, const QPalette& palette);

/// The checker under colours that are not opaque, the same in every scheme.
void paintAlphaChecker(QPainter& painter, const QRect& area);

} // namespace quillabrae::shell
