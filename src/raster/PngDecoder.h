// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/CroppedImage.h"
#include "raster/PngBands.h"
#include "raster/PngChunks.h"
#include "raster/RasterImage.h"

/// The ways from a walked PNG to pixels. Each gives a null image when it cannot. Sizes have been
/// checked before, but for the last one.
namespace quillabrae::raster {

/// Decodes the bands on several threads. Null as soon as a band is not what the index says; such a
/// file may still be a good PNG.
RasterImage decodePngBands(const PngLayout& layout, const PngBands& bands);

/// The same without transparent margins, where those are half of the picture or more, and of the
/// few bands that are read first; then it takes memory for about twice of what is left.
CroppedImage decodeCroppedPngBands(const PngLayout& layout, const PngBands& bands);

/// Decodes row by row any PNG that is not interlaced; the CRCs of its image data have been checked.
RasterImage decodePngRows(const PngLayout& layout);

/// Decodes any PNG through libspng; the CRCs of its image data have been checked.
RasterImage decodeInterlacedPng(const PngLayout& layout);

/// `decodeCroppedPng`, without margins however small the picture is.
CroppedImage decodeCroppedPngOfAnySize(const model::PngBytes& bytes);

} // namespace quillabrae::raster
