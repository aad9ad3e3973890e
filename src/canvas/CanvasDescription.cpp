// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasDescription.h"

#include "canvas/CanvasGeometry.h"
#include "canvas/CanvasView.h"
#include "canvas/LayerPictures.h"
#include "canvas/PictureCoverage.h"
#include "model/PaintAppSettings.h"
#include "model/PaintTool.h"

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

constexpr double pixelCenter = 0.5;
constexpr double percent = 100.0;

/// Which of `count` pixels, stretched from `low` on over `length`, stands at `at`; -1 for none.
int sourceIndex(double at, double low, double length, int count) {
    const double index = std::floor((at - low) * count / length);
    return index >= 0.0 && index < count ? static_cast<int>(index) : -1;
}

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

/// Lays the pixel of a picture that stands at a place of the canvas, if any, over `ground`.
void layPictureOver(QRgb& ground, const CanvasPicture& picture, double x, double y) {
    const QImage image = picture.image.toQImage();
    const QRectF& target = picture.target;
    const int column = sourceIndex(x, target.left(), target.width(), image.width());
    const int row = sourceIndex(y, target.top(), target.height(), image.height());
    if (column < 0 || row < 0) return;
    layOver(ground, qPremultiply(image.pixel(column, row)), picture.fraction);
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
    const double x = std::floor(point.x) + pixelCenter;
    const double y = std::floor(point.y) + pixelCenter;
    if (x < 0.0 || y < 0.0 || x >= project.canvasWidth || y >= project.canvasHeight)
        return std::nullopt;
    QRgb shown = 0;
    CoverageCache coverage;
    LayerPictures pictures(project, project.layers, coverage);
    while (!pictures.isAtEnd()) {
        for (const CanvasPicture& picture : pictures.nextGroup())
            layPictureOver(shown, picture, x, y);
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
