// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "platform/Clock.h"
#include "raster/PngCodec.h"

#include <QColor>
#include <QImage>

/// Small projects to save, and a clock that stands still.
namespace quillabrae::persistence::samples {

inline QDateTime instant() {
    return QDateTime(QDate(2024, 2, 29), QTime(12, 34, 56), Qt::UTC);
}

class StoppedClock final : public platform::Clock {
public:
    QDateTime now() const override { return instant(); }
};

/// A layer whose left half (rounded down) has `color`; the rest is transparent.
inline model::PaintLayer halfLayer(const QString& name, QSize size, QColor color) {
    raster::RasterImage image(size.width(), size.height());
    QImage target = image.paintTarget();
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width() / 2; ++x) target.setPixelColor(x, y, color);
    }
    model::PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.name = name;
    layer.bitmapPNGData = raster::encodePng(image);
    return layer;
}

inline model::PaintProject project(QSize size, std::vector<model::PaintLayer> layers) {
    model::PaintProject project;
    project.id = QUuid::createUuid();
    project.title = QStringLiteral("Sample");
    project.canvasWidth = size.width();
    project.canvasHeight = size.height();
    project.layers = std::move(layers);
    project.selectedLayerID = project.layers.front().id;
    project.lastModified = instant();
    return project;
}

/// Red on the left half over an empty layer.
inline model::PaintProject twoLayers(QSize size = QSize(8, 6)) {
    model::PaintLayer empty;
    empty.id = QUuid::createUuid();
    empty.name = QStringLiteral("Empty");
    return project(size, {empty, halfLayer(QStringLiteral("Red"), size, Qt::red)});
}

} // namespace quillabrae::persistence::samples
