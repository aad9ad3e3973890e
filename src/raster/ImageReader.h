// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillabrae::raster {

/// The picture in an image file: first frame, orientation applied, converted to sRGB. Nothing for
/// a file that cannot be read, is no raster picture, or is beyond the size limits (which are
/// checked before anything is allocated for its pixels). The format is told by the contents.
std::optional<RasterImage> readImageFile(const QString& path);

/// The same for bytes in memory.
std::optional<RasterImage> readImage(const QByteArray& bytes);

} // namespace quillabrae::raster
