// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QPainter;
class QPalette;
class QRectF;

namespace quillabrae::shell {

/// The mark of the control that has the keyboard: a ring of the accent just inside `face`.
void paintFocusRing(QPainter& painter, const QRectF& face, const QPalette& palette);

} // namespace quillabrae::shell
