// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasDescription.h"

#include "canvas/CanvasGeometry.h"
#include "canvas/CanvasView.h"
#include "canvas/DeviceView.h"
#include "canvas/LayerPictures.h"
#include "canvas/PictureCoverage.h"
#include "model/PaintAppSettings.h"
#include "model/PaintTool.h"
#include "raster/Stretch.h"

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {
namespace {

/// The context of this file's texts, for translators.
struct CanvasDescriptionTexts {
    Q_DECLARE_TR_FUNCTIONS(CanvasDescriptionTexts)
};

constexpr double percent = 100.0;

/// Lays a picture's pixel over `ground`, both premultiplied.
void layOver(QRgb& ground, QRgb pixel, int fraction) {
    const auto part = [&](int above, int below, int alpha) {
        constexpr int whole = 255;
        const double over = above * fraction / double(whole);
        const double rest = 1.0 - alpha * fraction / double(whole * whole);
        return static_cast<int>(std::lround(std::min(over + below * rest, double(whole))));
    };
    const int alpha = qAlpha(pixel);
    ground =
        qRgba(part(qRed(pixel), qRed(ground), alpha), part(qGreen(pixel), qGreen(ground), alpha),
              part(qBlue(pixel), qBlue(ground), alpha), part(alpha, qAlpha(ground), alpha));
}

/// The pixel of a picture that is shown at a device pixel, premultiplied.
QRgb sampled(const CanvasPicture& picture, const DeviceView& view, QPoint device) {
    const QRectF& target = picture.target;
    const QSize size = picture.pixels.wholeSize;
    const raster::AxisSamples column =
        view.x.samples(device.x(), device.x() + 1, target.x(), target.width(), size.width());
    const raster::AxisSamples row =
        view.y.samples(device.y(), device.y() + 1, target.y(), target.height(), size.height());
    if (column.isEmpty() || row.isEmpty()) return 0;
    const QPoint place(column.source.front(), row.source.front());
    if (!picture.pixels.part().contains(place)) return 0;
    // Of premultiplied pixels this is the value as it is stored.
    return picture.pixels.image.toQImage().pixel(place - picture.pixels.origin);
}

QString place(const model::PaintProject& project, model::CanvasPoint point) {
    const auto color = shownColor(project, point);
    const QString name =
        color ? QColor::fromRgbF(float(color->red), float(color->green), float(color->blue)).name()
              : CanvasDescriptionTexts::tr("transparent");
    return CanvasDescriptionTexts::tr("Pixel %1, %2, %3")
        .arg(std::floor(point.x))
        .arg(std::floor(point.y))
        .arg(name);
}

QString layerWords(const model::PaintProject& project) {
    const model::PaintLayer* layer = project.selectedLayer();
    if (layer == nullptr) return CanvasDescriptionTexts::tr("No layer");
    QString words = CanvasDescriptionTexts::tr("Layer %1").arg(layer->name);
    if (!layer->isVisible) words += CanvasDescriptionTexts::tr(", hidden");
    if (layer->isLocked) words += CanvasDescriptionTexts::tr(", locked");
    return words;
}

QString selectionWords(const model::PaintProject& project) {
    const auto selection = currentSelection(project);
    if (!selection) return CanvasDescriptionTexts::tr("No selection");
    return CanvasDescriptionTexts::tr("Selection at %1, %2, %3 by %4")
        .arg(selection->x)
        .arg(selection->y)
        .arg(selection->width)
        .arg(selection->height);
}

} // namespace

std::optional<model::ColorValue> shownColor(const model::PaintProject& project,
                                            model::CanvasPoint point) {
    // As a device pixel that shows that one.
    const DeviceView view{{}, {}, project.canvasWidth, project.canvasHeight};
    const auto limit = [](double value) {
        return static_cast<int>(std::clamp(std::floor(value), -1.0, 1e9));
    };
    const QPoint place(limit(point.x), limit(point.y));
    const QRect device = view.canvasPixels(QRect(place, QSize(1, 1)));
    if (device.isEmpty()) return std::nullopt;
    QRgb shown = 0;
    CoverageCache coverage;
    LayerPictures pictures(project, project.layers, view, device, coverage);
    while (!pictures.isAtEnd()) {
        for (const CanvasPicture& picture : pictures.nextGroup())
            layOver(shown, sampled(picture, view, place), picture.fraction);
    }
    if (qAlpha(shown) == 0) return std::nullopt;
    const QColor straight = QColor::fromRgba(qUnpremultiply(shown));
    return model::ColorValue{straight.redF(), straight.greenF(), straight.blueF(),
                             straight.alphaF()};
}

QString canvasDescription(const CanvasView& view) {
    const model::PaintProject* project = view.project();
    if (project == nullptr) return {};
    QStringList parts;
    if (const auto point = view.hoveredCanvasPoint()) parts.append(place(*project, *point));
    QString tool = model::title(view.selectedTool());
    if (view.keyboardPointer().isPressed()) tool += CanvasDescriptionTexts::tr(", pressed");
    parts.append(tool);
    parts.append(
        CanvasDescriptionTexts::tr("Zoom %1%").arg(std::lround(view.currentZoom() * percent)));
    parts.append(layerWords(*project));
    parts.append(selectionWords(*project));
    return parts.join(QStringLiteral(". "));
}

} // namespace quillabrae::canvas
