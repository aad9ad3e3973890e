// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::effects {

/// A printed comic: flat areas in few tones, ink lines along edges, and shadows of printed dots.
/// Alpha stays.
struct Comic {
    /// The variance below which a region becomes flat.
    float flatness = 0.0025F;
    /// How many tones there are, black and white among them; at least 2.
    float tones = 7.0F;
    /// What chroma is multiplied by.
    float chroma = 1.35F;
    /// The standard deviations of the two Gaussians whose difference is an edge, in pixels.
    float fineDeviation = 1.0F;
    float coarseDeviation = 1.6F;
    /// The relative differences between which a line comes in.
    float lineBegins = 0.01F;
    float lineIsFull = 0.032F;
    /// The luma below which dots begin, and how much of the paper they cover at black.
    float shadow = 0.32F;
    float coverage = 1.0F;
};

/// Null for a null picture, and where there is no memory for the result. Takes as much memory as
/// the picture beside it.
raster::RasterImage applied(const Comic& comic, const raster::RasterImage& image);

} // namespace quillabrae::effects
