// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <QImage>
#include <QSize>

namespace quillabrae::shell {

/// The project's visible layers at their opacities, with the pixels that float, on clear; fitted
/// into `room` (device pixels) with the canvas's proportions, so one side equals the room's.
/// Sampled, not filtered whole: its cost does not grow with the canvas once the layers are decoded.
/// Safe on any thread.
QImage projectThumbnail(const model::PaintProject& project, QSize room);

/// One layer at full strength, fitted likewise; null for a layer without pixels. Safe on any
/// thread.
QImage layerThumbnail(const model::PaintLayer& layer, QSizeF canvas, QSize room);

} // namespace quillabrae::shell
