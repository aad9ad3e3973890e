// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/QuillabraePlugin.h"
#include "model/PaintLayer.h"
#include "raster/RasterImage.h"

/// Runs the effects of plugins, each with the one setting that the library offers it with.
namespace quillabrae::effects::PluginEffectService {

/// The picture as the effect leaves it, of the same size. Null for a null picture, and where there
/// is no memory for it.
raster::RasterImage apply(QuillabraePluginEffect effect, const raster::RasterImage& image);

/// Rewrites the whole layer, at full strength whatever its opacity. False, with the layer as it
/// was, when its picture could not be made.
bool apply(QuillabraePluginEffect effect, model::PaintLayer& layer, double canvasWidth,
           double canvasHeight);

} // namespace quillabrae::effects::PluginEffectService
