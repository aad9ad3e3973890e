// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/PixelSelection.h"
#include "model/PngBytes.h"
#include "model/SelectionCombineOperation.h"

#include <QRectF>

#include <optional>
#include <span>

/// The masks of selections: PNGs of white pixels whose alpha says what is selected, the first pixel
/// at the top left of the selection's rect. Where a pixel is either in or out, an alpha above 0.1
/// is in.
namespace quillabrae::raster::LayerRasterService {

/// The mask of an ellipse that touches the sides of a rect of that size, with a soft edge: each
/// pixel's alpha is the part of it that is covered. The mask has the rounded size, at least 1 by 1.
/// Nothing for a size that is not finite or beyond the limits of a picture.
std::optional<model::PngBytes> ellipseSelectionMask(double width, double height);

/// The mask of a closed line through `points` (document coordinates) for a selection of `bounds`,
/// with a soft edge. Whatever the line winds around is in, crossed or not. Nothing for fewer than
/// three points, for points that are not finite, or for bounds that no picture has.
std::optional<model::PngBytes> lassoSelectionMask(std::span<const model::CanvasPoint> points,
                                                  const QRectF& bounds);

/// What two selections select together, or what `first` selects and `second` does not. Both are
/// taken at their rects, snapped outward to whole pixels. The result is trimmed to its pixels and
/// has a mask (but for a size that no picture has, where it is the rect alone). Nothing when
/// nothing is left, and for rects that are not finite or reach further than a picture can.
std::optional<model::PixelSelection> combinedSelection(const model::PixelSelection& first,
                                                       const model::PixelSelection& second,
                                                       model::SelectionCombineOperation operation);

} // namespace quillabrae::raster::LayerRasterService
