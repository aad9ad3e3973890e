// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>

namespace quillabrae::model {

/// The whole canvas pixels that stand for a rectangle in document coordinates: without negative
/// sides, all its numbers cut off towards zero, at least one pixel in size. Floating pixels stand
/// on those of their selection's rectangle.
QRectF wholePixelRect(const QRectF& rect);

} // namespace quillabrae::model
