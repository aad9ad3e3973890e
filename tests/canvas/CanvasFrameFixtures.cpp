// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFrameFixtures.h"

#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace quillabrae::canvas::fixtures {
namespace {

using model::PaintLayer;
using model::PaintProject;
using raster::RasterImage;

int product(int x, int y) {
    return static_cast<int>(std::floor(x * y / 255.0 + 0.5));
}

struct Sample {
    RasterImage image;
    QRectF target;
    double opacity;
};

std::vector<Sample> samplesOf(const CanvasFrame& frame) {
    const PaintProject& project = *frame.project;
    const QRectF canvas(0, 0, project.canvasWidth, project.canvasHeight);
    std::vector<Sample> samples;
    for (const PaintLayer& layer : project.layers) {
        if (!layer.isVisible) continue;
        if (frame.liveLayerID == layer.id && frame.liveImage) {
            samples.push_back({*frame.liveImage, canvas, layer.opacity});
            continue;
        }
        if (layer.bitmapPNGData)
            samples.push_back({raster::decodePng(*layer.bitmapPNGData), canvas, layer.opacity});
        if (project.floatingSelection && project.floatingSelection->layerID == layer.id &&
            project.pixelSelection) {
            const auto& s = *project.pixelSelection;
            const QRectF rect = QRectF(s.x, s.y, s.width, s.height).normalized();
            samples.push_back({raster::decodePng(project.floatingSelection->pngData),
                               QRectF(std::trunc(rect.x()), std::trunc(rect.y()),
                                      std::max(1.0, std::trunc(rect.width())),
                                      std::max(1.0, std::trunc(rect.height()))),
                               layer.opacity});
        }
    }
    return samples;
}

} // namespace

RasterImage randomImage(int width, int height, std::mt19937& random) {
    RasterImage image(width, height);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int kind = byte(random) % 3;
            const int alpha = kind == 0 ? 255 : kind == 1 ? 0 : byte(random);
            std::uniform_int_distribution<int> component(0, alpha);
            std::uint8_t* p = image.mutableRow(y) + 4 * static_cast<std::size_t>(x);
            for (int c = 0; c < 3; ++c) p[c] = static_cast<std::uint8_t>(component(random));
            p[3] = static_cast<std::uint8_t>(alpha);
        }
    }
    return image;
}

RasterImage filledImage(int width, int height, QColor color) {
    RasterImage image(width, height);
    image.paintTarget().fill(color);
    return image;
}

PaintLayer layerOf(const RasterImage& image, double opacity) {
    PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.opacity = opacity;
    layer.bitmapPNGData = raster::LayerRasterService::pngData(image);
    return layer;
}

PaintProject projectOf(double width, double height, std::vector<PaintLayer> layers) {
    PaintProject project;
    project.canvasWidth = width;
    project.canvasHeight = height;
    project.layers = std::move(layers);
    return project;
}

PaintProject randomProject(int width, int height, std::mt19937& random) {
    PaintProject project = projectOf(width, height,
                                     {layerOf(randomImage(width, height, random), 0.8),
                                      layerOf(randomImage(width, height, random)),
                                      layerOf(randomImage(width / 2 + 1, height * 2, random), 0.35),
                                      layerOf(randomImage(width, height, random), 0.6)});
    project.layers[1].isVisible = false;
    return project;
}

CanvasFrame frameOf(const PaintProject& project, double zoom, double ratio, QSizeF viewport,
                    QPointF origin) {
    CanvasFrame frame;
    frame.project = &project;
    frame.zoomScale = zoom;
    frame.devicePixelRatio = ratio;
    frame.viewportSize = viewport;
    frame.canvasOrigin = origin;
    frame.secondaryLabelColor = Qt::transparent;
    return frame;
}

QImage blankTarget(const CanvasFrame& frame) {
    QImage target(static_cast<int>(std::ceil(frame.viewportSize.width() * frame.devicePixelRatio)),
                  static_cast<int>(std::ceil(frame.viewportSize.height() * frame.devicePixelRatio)),
                  QImage::Format_RGB32);
    target.fill(Qt::magenta);
    return target;
}

QImage painted(const CanvasFrame& frame) {
    CanvasRenderer renderer;
    return painted(frame, renderer);
}

QImage painted(const CanvasFrame& frame, CanvasRenderer& renderer) {
    QImage target = blankTarget(frame);
    renderer.paint(target, frame, target.rect());
    return target;
}

QImage bookPainted(const CanvasFrame& frame) {
    QImage target = blankTarget(frame);
    const std::vector<Sample> samples = samplesOf(frame);
    for (int y = 0; y < target.height(); ++y) {
        for (int x = 0; x < target.width(); ++x) {
            const double right = (x + 0.5) / frame.devicePixelRatio - frame.canvasOrigin.x();
            const double down = (y + 0.5) / frame.devicePixelRatio - frame.canvasOrigin.y();
            const double column = right / frame.zoomScale, row = down / frame.zoomScale;
            if (column < 0 || row < 0 || column >= frame.project->canvasWidth ||
                row >= frame.project->canvasHeight)
                continue;
            const bool shades =
                (static_cast<int>(right / 22) + static_cast<int>(down / 22)) % 2 == 0;
            int color[3];
            std::fill_n(color, 3, shades ? 219 : 255);
            for (const Sample& sample : samples) {
                if (sample.image.isNull()) continue;
                const QRectF& area = sample.target;
                if (column < area.left() || column >= area.left() + area.width() ||
                    row < area.top() || row >= area.top() + area.height())
                    continue;
                const int sx = static_cast<int>(
                    std::floor((column - area.left()) * sample.image.width() / area.width()));
                const int sy = static_cast<int>(
                    std::floor((row - area.top()) * sample.image.height() / area.height()));
                const std::uint8_t* p =
                    sample.image.row(std::min(sy, sample.image.height() - 1)) +
                    4 * static_cast<std::size_t>(std::min(sx, sample.image.width() - 1));
                const int fraction = static_cast<int>(std::lround(sample.opacity * 255));
                const int kept = 255 - product(p[3], fraction);
                for (int c = 0; c < 3; ++c)
                    color[c] = product(p[c], fraction) + product(color[c], kept);
            }
            target.setPixel(x, y, qRgb(color[0], color[1], color[2]));
        }
    }
    return target;
}

int greatestDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 256;
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            greatest = std::max({greatest, std::abs(qRed(p) - qRed(q)),
                                 std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return greatest;
}

} // namespace quillabrae::canvas::fixtures
