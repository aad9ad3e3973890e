// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/WholePixelRect.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::model {

QRectF wholePixelRect(const QRectF& rect) {
    const QRectF standard = rect.normalized();
    return {std::trunc(standard.x()), std::trunc(standard.y()),
            std::max(std::trunc(standard.width()), 1.0),
            std::max(std::trunc(standard.height()), 1.0)};
}

} // namespace quillabrae::model
