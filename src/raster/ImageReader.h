// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillabrae::raster {

/// Why there is no picture: it is not one that can be read, or it is larger than may be.
enum class ImageRefusal { unreadable, beyondLimits };

/// The picture in an image file: first frame, orientation applied, converted to sRGB. Nothing for
/// a file that cannot be read, is no raster picture, or is beyond the size limits (which are
/// checked before anything is allocated for its pixels); `refusal`, where given, then tells which.
/// The format is told by the contents.
std::optional<RasterImage> readImageFile(const QString& path, ImageRefusal* refusal = nullptr);

/// The same for bytes in memory.
std::optional<RasterImage> readImage(const QByteArray& bytes, ImageRefusal* refusal = nullptr);

} // namespace quillabrae::raster
