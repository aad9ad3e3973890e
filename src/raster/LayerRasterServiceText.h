// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/PaintLayer.h"
#include "raster/RasterImage.h"
#include "raster/TextStyle.h"

#include <QRect>
#include <QSizeF>

namespace quillabrae::raster {
class TextLayout;
}

/// Text as pixels. Needs a QGuiApplication.
namespace quillabrae::raster::LayerRasterService {

/// Draws a text into a layer, in a box whose top left corner is `at` in document coordinates. Lines
/// break at the box's width and begin at its top edge; what runs out of the box is cut off. The
/// layer is rewritten even where nothing of the text shows.
void drawText(const QString& text, model::PaintLayer& layer, double canvasWidth,
              double canvasHeight, model::CanvasPoint at, const model::ColorValue& color,
              const TextStyle& style, QSizeF textBoxSize);

/// The same on a canvas-sized image, or on one of the box's size with the box at its corner: the
/// two give the same pixels over the same background. The layout is as wide as the box. Returns the
/// pixels that may have changed, clipped to the image.
QRect drawText(const TextLayout& layout, RasterImage& image, model::CanvasPoint at,
               const model::ColorValue& color, QSizeF textBoxSize);

} // namespace quillabrae::raster::LayerRasterService
