// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/SVGSizeFields.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

double wholePixels(double value) {
    return std::max(std::round(value), 1.0);
}

} // namespace

SVGSizeFields::SVGSizeFields(QSizeF naturalSize)
    : m_ratio(std::max(naturalSize.width(), 1.0) / std::max(naturalSize.height(), 1.0)),
      m_width(wholePixels(naturalSize.width())),
      m_height(wholePixels(naturalSize.height())) {}

void SVGSizeFields::editWidth(double width) {
    m_width = wholePixels(width);
    m_height = heightFor(m_width);
}

void SVGSizeFields::editHeight(double height) {
    m_height = wholePixels(height);
    m_width = wholePixels(m_height * m_ratio);
}

persistence::SVGImportSizeResult SVGSizeFields::accepted() const {
    const double width = wholePixels(m_width);
    return {width, heightFor(width)};
}

double SVGSizeFields::heightFor(double width) const {
    return wholePixels(width / m_ratio);
}

} // namespace quillabrae::shell
