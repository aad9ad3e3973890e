// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PixelSelection.h"
#include "raster/LayerRasterServiceLayers.h"
#include "raster/RasterFixtures.h"

#include <optional>
#include <random>

/// The layer operations once more, pixel by pixel from their definitions: what the engine has to
/// give byte for byte.
namespace quillabrae::raster::book {

using Selection = std::optional<model::PixelSelection>;

/// The selection's rectangle on a canvas of whole pixels; the whole canvas without one.
QRect alignedRect(const Selection& selection, int width, int height);
/// How far a pixel is selected, 0 to 255.
int coverageAt(const Selection& selection, int width, int height, int x, int y);

RasterImage inverted(const RasterImage& image, const Selection& selection);
RasterImage cropped(const RasterImage& image, const model::PixelSelection& selection);
RasterImage cleared(const RasterImage& image, const Selection& selection);
RasterImage flipped(const RasterImage& image, const Selection& selection, MirrorAxis axis);
/// Nothing where alignment has nothing to do.
std::optional<RasterImage> aligned(const RasterImage& image, const QRectF& target,
                                   LayerRasterService::AlignHorizontalTarget horizontal,
                                   LayerRasterService::AlignVerticalTarget vertical);
/// `image` stretched to `target` over `base`.
RasterImage composited(const RasterImage& image, const RasterImage& base, const QRectF& target);

/// A selection of a canvas of that size: within it, overhanging any edge, beyond it, between pixel
/// borders or turned inside out; without a mask, with one of its own size, with one of another, or
/// with bytes that are none.
model::PixelSelection randomSelection(int width, int height, std::mt19937& random);

} // namespace quillabrae::raster::book
