// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasRenderer.h"
#include "model/PaintProject.h"
#include "raster/RasterImage.h"

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QSizeF>

#include <random>
#include <vector>

/// Projects and frames for the renderer's tests, and the renderer's slow twin.
namespace quillabrae::canvas::fixtures {

raster::RasterImage randomImage(int width, int height, std::mt19937& random);
raster::RasterImage filledImage(int width, int height, QColor color);
model::PaintLayer layerOf(const raster::RasterImage& image, double opacity = 1.0);
model::PaintProject projectOf(double width, double height, std::vector<model::PaintLayer> layers);
/// A project of a few random layers, one of them hidden, one of another size than the canvas.
model::PaintProject randomProject(int width, int height, std::mt19937& random);

/// A frame without a border or a grid.
CanvasFrame frameOf(const model::PaintProject& project, double zoom, double ratio, QSizeF viewport,
                    QPointF origin);
/// The viewport, in magenta.
QImage blankTarget(const CanvasFrame& frame);
QImage painted(const CanvasFrame& frame);
/// The same by a renderer that may have painted before.
QImage painted(const CanvasFrame& frame, CanvasRenderer& renderer);
/// What `painted` ought to be, without border and grid: every device pixel on its own, by its
/// centre.
QImage bookPainted(const CanvasFrame& frame);
/// The greatest difference of any component; 256 for pictures of different sizes.
int greatestDifference(const QImage& a, const QImage& b);

} // namespace quillabrae::canvas::fixtures
