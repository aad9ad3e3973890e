// SPDX-License-Identifier: GPL-3.0-or-later
// A text is drawn opaque on a transparent picture of its box, clipped to the box, and that picture
// is composited source-over, multiplied by the colour's alpha: strokes that cross add nothing up,
// and what is under the text has no part in how its edges come out.
#include "raster/LayerRasterServiceText.h"

#include "raster/BlendKernels.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRewrite.h"
#include "raster/TextLayout.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillabrae::raster::LayerRasterService {
namespace {

/// How much of the pixel at `index` lies between `low` and `high`.
std::uint8_t coverage(int index, double low, double high) {
    return unitByte(std::min(high, index + 1.0) - std::max<double>(low, index));
}

/// Takes away what is outside `box`, which covers a part of the outermost pixels and the whole of
/// all others.
void clip(RasterImage& picture, const QRectF& box) {
    const int right = picture.width() - 1;
    const int bottom = picture.height() - 1;
    const auto width = static_cast<std::size_t>(picture.width());
    const auto fadeRow = [&](int y) {
        const std::uint8_t kept = coverage(y, box.top(), box.bottom());
        if (kept < 255) destinationOutPixels(picture.mutableRow(y), width, 255 - kept);
    };
    const auto fadeColumn = [&](int x) {
        const std::uint8_t kept = coverage(x, box.left(), box.right());
        if (kept == 255) return;
        for (int y = 0; y <= bottom; ++y)
            destinationOutPixels(picture.mutableRow(y) + 4 * static_cast<std::size_t>(x), 1,
                                 255 - kept);
    };
    fadeRow(0);
    if (bottom > 0) fadeRow(bottom);
    fadeColumn(0);
    if (right > 0) fadeColumn(right);
}

} // namespace

QRect drawText(const TextLayout& layout, RasterImage& image, model::CanvasPoint at,
               const model::ColorValue& color, QSizeF textBoxSize) {
    if (image.isNull() || !(textBoxSize.width() > 0.0) || !(textBoxSize.height() > 0.0)) return {};
    const QRectF box(QPointF(at.x, at.y), textBoxSize);
    const QRect pixels = pixelAlignedRect(box, image.width(), image.height()).toRect();
    if (pixels.isEmpty()) return {};
    const PixelColor opaque = PixelColor::of(color);
    RasterImage picture(pixels.width(), pixels.height());
    draw(picture, [&](QPainter& painter) {
        layout.draw(painter, box.topLeft() - pixels.topLeft(),
                    QColor(opaque.red, opaque.green, opaque.blue),
                    QRectF(0, 0, pixels.width(), pixels.height()));
    });
    clip(picture, box.translated(-pixels.topLeft()));
    drawImage(image, picture, pixels, color.alpha);
    return pixels;
}

void drawText(const QString& text, model::PaintLayer& layer, double canvasWidth,
              double canvasHeight, model::CanvasPoint at, const model::ColorValue& color,
              const TextStyle& style, QSizeF textBoxSize) {
    const LayerRewrite rewrite(layer, canvasWidth, canvasHeight);
    RasterImage image = rewrite.image();
    const QRect changed =
        drawText(TextLayout(text, style, textBoxSize.width()), image, at, color, textBoxSize);
    rewrite.store(image, changed);
}

} // namespace quillabrae::raster::LayerRasterService
