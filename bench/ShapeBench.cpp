// SPDX-License-Identifier: GPL-3.0-or-later
// Shapes of 2000 by 2000 on a 4096 by 4096 layer, filled, outlined and both, and a gradient over
// all of it. Beside them QPainter, in its fastest format and in ours.
#include "raster/LayerRasterService.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace quillabrae::bench {
namespace {

using model::CanvasShape;
using model::ShapeDrawingMode;

constexpr int side = 4096;
constexpr QRectF box(1000.3, 900.7, 2000.0, 2000.0);
constexpr double lineWidth = 20.0;

enum class Ink { opaque, translucent };

double alphaOf(Ink ink) {
    return ink == Ink::opaque ? 1.0 : 0.6;
}

model::PaintStroke strokeOf(model::PaintTool tool, Ink ink) {
    model::PaintStroke stroke;
    stroke.tool = tool;
    stroke.color = {0.8, 0.1, 0.2, alphaOf(ink)};
    stroke.secondaryColor = model::ColorValue{0.1, 0.7, 0.4, alphaOf(ink)};
    stroke.lineWidth = lineWidth;
    stroke.points = {{box.left(), box.top()}, {box.right(), box.bottom()}};
    return stroke;
}

void draw(benchmark::State& state, const model::PaintStroke& stroke) {
    raster::RasterImage image(side, side);
    raster::LayerRasterService::drawStroke(stroke, image, side, side);
    for (auto _ : state)
        benchmark::DoNotOptimize(raster::LayerRasterService::drawStroke(stroke, image, side, side));
}

void shape(benchmark::State& state, CanvasShape shape, ShapeDrawingMode mode, Ink ink) {
    model::PaintStroke stroke = strokeOf(model::PaintTool::shapes, ink);
    stroke.shape = shape;
    stroke.shapeDrawingMode = mode;
    draw(state, stroke);
}

void qpainterShape(benchmark::State& state, CanvasShape shape, ShapeDrawingMode mode, Ink ink,
                   QImage::Format format) {
    QImage image(side, side, format);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto alpha = static_cast<float>(alphaOf(ink));
    painter.setPen(Qt::NoPen);
    if (includesOutline(mode))
        painter.setPen(QPen(QColor::fromRgbF(0.8F, 0.1F, 0.2F, alpha), lineWidth, Qt::SolidLine,
                            Qt::FlatCap, Qt::RoundJoin));
    if (includesFill(mode)) painter.setBrush(QColor::fromRgbF(0.1F, 0.7F, 0.4F, alpha));
    QPolygonF diamond({QPointF(box.center().x(), box.top()), QPointF(box.right(), box.center().y()),
                       QPointF(box.center().x(), box.bottom()),
                       QPointF(box.left(), box.center().y())});
    for (auto _ : state) {
        if (shape == CanvasShape::ellipse) painter.drawEllipse(box);
        if (shape == CanvasShape::rectangle) painter.drawRect(box);
        if (shape == CanvasShape::diamond) painter.drawPolygon(diamond);
    }
}

void gradient(benchmark::State& state, Ink ink) {
    draw(state, strokeOf(model::PaintTool::gradient, ink));
}

void qpainterGradient(benchmark::State& state, Ink ink) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QLinearGradient brush(box.topLeft(), box.bottomRight());
    brush.setColorAt(0.0, QColor::fromRgbF(0.8F, 0.1F, 0.2F, static_cast<float>(alphaOf(ink))));
    brush.setColorAt(1.0, QColor::fromRgbF(0.1F, 0.7F, 0.4F, static_cast<float>(alphaOf(ink))));
    for (auto _ : state) painter.fillRect(image.rect(), brush);
}

template <typename Fn, typename... Arguments>
void add(const std::string& name, Fn fn, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), fn, arguments...)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
}

const bool areRegistered = [] {
    for (const Ink ink : {Ink::opaque, Ink::translucent}) {
        const std::string start =
            ink == Ink::opaque ? std::string("shape/opaque/") : std::string("shape/translucent/");
        for (const CanvasShape form :
             {CanvasShape::rectangle, CanvasShape::ellipse, CanvasShape::diamond}) {
            for (const ShapeDrawingMode mode : model::allShapeDrawingModes()) {
                const std::string name =
                    start + rawText(form).toStdString() + "/" + rawText(mode).toStdString();
                add(name, shape, form, mode, ink);
                add(name + "/qpainter-argb32", qpainterShape, form, mode, ink,
                    QImage::Format_ARGB32_Premultiplied);
                add(name + "/qpainter-rgba8888", qpainterShape, form, mode, ink,
                    QImage::Format_RGBA8888_Premultiplied);
            }
        }
        add(start + "gradient", gradient, ink);
        add(start + "gradient/qpainter-argb32", qpainterGradient, ink);
    }
    return true;
}();

} // namespace
} // namespace quillabrae::bench
