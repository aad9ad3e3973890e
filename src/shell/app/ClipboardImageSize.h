// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>

#include <optional>

namespace quillabrae::shell {

/// The size of the picture on the clipboard in pixels; nothing when there is none.
std::optional<QSizeF> clipboardImageSize();

} // namespace quillabrae::shell
