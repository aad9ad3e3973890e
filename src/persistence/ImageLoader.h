// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/WorkRunner.h"
#include "raster/ImageReader.h"
#include "raster/RasterImage.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillabrae::persistence {

/// The picture in an image file of any kind that is read here (HEIC, AVIF and JPEG 2000 beside what
/// raster::readImage reads): first frame, upright, in sRGB. Nothing for what is no file, cannot be
/// read, is no raster picture, or is beyond the size limits, which are looked at before there is
/// memory for its pixels; `refusal`, where given, then tells which. The kind is told by the
/// contents. Throws platform::WorkCancelled when `control` was told so.
std::optional<raster::RasterImage> loadImageFile(const QString& path,
                                                 const platform::WorkControl& control = {},
                                                 raster::ImageRefusal* refusal = nullptr);

/// The same for bytes in memory.
std::optional<raster::RasterImage> loadImage(const QByteArray& bytes,
                                             const platform::WorkControl& control = {},
                                             raster::ImageRefusal* refusal = nullptr);

} // namespace quillabrae::persistence
