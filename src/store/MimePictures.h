// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"
#include "platform/MimeSource.h"
#include "raster/RasterImage.h"

#include <optional>

/// Which of the forms on offer holds a picture.
namespace quillabrae::store {

/// The types of whole-pixel pictures on offer, in the order in which they are tried: PNG, TIFF,
/// WebP, then others as offered.
QStringList pictureTypes(const platform::MimeSource& source);

/// The SVG document on offer: under its own type, else text that has an SVG element in it. Empty
/// when there is none.
QByteArray svgIn(const platform::MimeSource& source);

/// A picture without an origin; nothing for a null image.
std::optional<model::PastedImage> pastedImageOf(const raster::RasterImage& image);

} // namespace quillabrae::store
