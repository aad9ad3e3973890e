// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QPainter;
class QRect;
class QPalette;

namespace quillabrae::shell {

/// The ground of what floats over the canvas: a raised surface with rounded corners and a hairline.
void paintCard(QPainter& painter, const QRect& rect, const QPalette& palette);

} // namespace quillabrae::shell
