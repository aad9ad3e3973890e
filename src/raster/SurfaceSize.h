// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

#include <optional>

namespace quillabrae::raster {

/// The pixels of a surface of that size: each side rounded, halves away from zero, and at least 1.
/// Nothing for a size that is not finite or beyond the limits of a picture.
std::optional<QSize> surfaceSize(double width, double height);

} // namespace quillabrae::raster
