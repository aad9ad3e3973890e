// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyle>
#include <QWidget>

namespace quillabrae::shell {

/// Where a part of a widget stands, given where it would while text runs from left to right.
inline QRect visualPart(const QWidget& widget, const QRect& part) {
    return QStyle::visualRect(widget.layoutDirection(), widget.rect(), part);
}

} // namespace quillabrae::shell
