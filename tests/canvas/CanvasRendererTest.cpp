// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasRenderer.h"
#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <tuple>
#include <vector>

namespace quillabrae::canvas {
namespace {

using model::PaintLayer;
using model::PaintProject;
using raster::RasterImage;

RasterImage randomImage(int width, int height, std::mt19937& random) {
    RasterImage image(width, height);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int kind = byte(random) % 3;
            const int alpha = kind == 0 ? 255 : kind == 1 ? 0 : byte(random);
            std::uniform_int_distribution<int> component(0, alpha);
            std::uint8_t* p = image.mutableRow(y) + 4 * x;
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

PaintLayer layerOf(const RasterImage& image, double opacity = 1.0) {
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

/// A project of a few random layers, one of them hidden, one of another size than the canvas.
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
    QImage target = blankTarget(frame);
    CanvasRenderer().paint(target, frame, target.rect());
    return target;
}

// The slow twin: every device pixel on its own, by its centre.

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
                const std::uint8_t* p = sample.image.row(std::min(sy, sample.image.height() - 1)) +
                                        4 * std::min(sx, sample.image.width() - 1);
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

/// The greatest difference of any component.
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

class CanvasRendererScales : public testing::TestWithParam<std::tuple<double, double>> {};

TEST_P(CanvasRendererScales, ShowsThePixelUnderEachDevicePixelsCentre) {
    const auto [zoom, ratio] = GetParam();
    std::mt19937 random(3);
    const PaintProject project = randomProject(150, 97, random);
    for (const QPointF origin : {QPointF(18, 18), QPointF(-7, 11.2), QPointF(-400.4, -200.8)}) {
        const CanvasFrame frame = frameOf(project, zoom, ratio, {141, 93}, origin);
        EXPECT_EQ(painted(frame), bookPainted(frame)) << origin.x();
    }
}

TEST_P(CanvasRendererScales, PaintsInPointsWhatItPaintsInDevicePixels) {
    const auto [zoom, ratio] = GetParam();
    std::mt19937 random(4);
    const PaintProject project = randomProject(300, 290, random);
    CanvasFrame frame = frameOf(project, zoom, ratio, {260, 240}, {10, 12});
    frame.secondaryLabelColor = Qt::black;
    frame.showsPixelGrid = true;
    QImage device = blankTarget(frame);
    device.setDevicePixelRatio(ratio);
    {
        QPainter painter(&device);
        CanvasRenderer().paint(painter, frame, QRect(0, 0, 260, 240));
    }
    device.setDevicePixelRatio(1.0);
    EXPECT_EQ(device, painted(frame));
}

TEST_P(CanvasRendererScales, PaintsAPartAsItPaintsTheWhole) {
    const auto [zoom, ratio] = GetParam();
    std::mt19937 random(5);
    const PaintProject project = randomProject(90, 80, random);
    CanvasFrame frame = frameOf(project, zoom, ratio, {120, 110}, {8, 5});
    frame.secondaryLabelColor = Qt::black;
    frame.showsPixelGrid = true;
    const QImage whole = painted(frame);
    std::uniform_int_distribution<int> coordinate(-20, 200);
    for (int round = 0; round < 10; ++round) {
        const QRect dirty = QRect(QPoint(coordinate(random), coordinate(random)),
                                  QPoint(coordinate(random), coordinate(random)))
                                .normalized();
        QImage part = blankTarget(frame);
        CanvasRenderer().paint(part, frame, dirty);
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                const QRgb expected =
                    dirty.contains(x, y) ? whole.pixel(x, y) : QColor(Qt::magenta).rgb();
                ASSERT_EQ(part.pixel(x, y), expected) << x << ' ' << y;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryScale, CanvasRendererScales,
                         testing::Combine(testing::Values(0.1, 0.37, 1.0, 1.25, 3.0, 8.0, 64.0),
                                          testing::Values(1.0, 1.25, 1.5, 2.0)));

TEST(CanvasRenderer, ComposesEmptyAndOpaqueRegionsAsItDoesAllOthers) {
    std::mt19937 random(14);
    std::uniform_int_distribution<int> tile(0, 4);
    const auto patchwork = [&](int width, int height) {
        RasterImage image = randomImage(width, height, random);
        QImage target = image.paintTarget();
        QPainter painter(&target);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (int y = 0; y < height; y += 64) {
            for (int x = 0; x < width; x += 64) {
                const int kind = tile(random);
                if (kind < 2) painter.fillRect(x, y, 64, 64, Qt::transparent);
                if (kind > 2) painter.fillRect(x, y, 64, 64, QColor(10 * x % 256, y % 256, 77));
            }
        }
        return image;
    };
    PaintProject project = projectOf(333, 270, {});
    for (int i = 0; i < 4; ++i) project.layers.push_back(layerOf(patchwork(333, 270)));
    project.layers.push_back(layerOf(filledImage(333, 270, Qt::darkGreen)));
    project.layers.push_back(layerOf(patchwork(333, 270), 0.5));
    project.layers.push_back(layerOf(patchwork(90, 500)));
    CanvasRenderer renderer;
    for (const bool hasOpaqueLayer : {true, false}) {
        project.layers[4].isVisible = hasOpaqueLayer;
        for (const double zoom : {0.37, 1.0, 1.25, 3.0}) {
            const CanvasFrame frame = frameOf(project, zoom, 1.0, {300, 280}, {-20, 6});
            QImage target = blankTarget(frame);
            renderer.paint(target, frame, target.rect());
            EXPECT_EQ(target, bookPainted(frame)) << zoom;
            renderer.paint(target, frame, target.rect());
            EXPECT_EQ(target, bookPainted(frame)) << zoom;
        }
    }
}

TEST(CanvasRenderer, ShowsACheckerOf22PointCellsWhateverTheZoom) {
    const PaintProject project = projectOf(1000, 1000, {PaintLayer()});
    for (const double zoom : {0.1, 1.0, 7.0}) {
        const QImage image = painted(frameOf(project, zoom, 1.0, {120, 120}, {10, 10}));
        EXPECT_EQ(image.pixel(10, 10), qRgb(219, 219, 219));
        EXPECT_EQ(image.pixel(31, 10), qRgb(219, 219, 219));
        EXPECT_EQ(image.pixel(32, 10), qRgb(255, 255, 255));
        EXPECT_EQ(image.pixel(10, 32), qRgb(255, 255, 255));
        EXPECT_EQ(image.pixel(32, 32), qRgb(219, 219, 219));
        EXPECT_EQ(image.pixel(9, 10), QColor(Qt::magenta).rgb());
        EXPECT_EQ(image.pixel(10, 9), QColor(Qt::magenta).rgb());
    }
}

TEST(CanvasRenderer, LeavesTheSurroundingsAlone) {
    const PaintProject project = projectOf(5, 4, {layerOf(filledImage(5, 4, Qt::blue))});
    const QImage image = painted(frameOf(project, 2.0, 1.0, {30, 30}, {7, 9}));
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 30; ++x) {
            const bool isOnCanvas = QRect(7, 9, 10, 8).contains(x, y);
            EXPECT_EQ(image.pixel(x, y), QColor(isOnCanvas ? Qt::blue : Qt::magenta).rgb());
        }
    }
}

TEST(CanvasRenderer, ShowsTheLiveImageForItsWholeLayer) {
    std::mt19937 random(6);
    PaintProject project = randomProject(60, 50, random);
    for (int i = 0; i < 3; ++i) project.layers.push_back(layerOf(randomImage(60, 50, random), 0.5));
    const RasterImage live = randomImage(60, 50, random);
    // The floating pixels of the live layer are in the live image.
    project.floatingSelection = model::FloatingPixelSelection{
        *layerOf(filledImage(9, 9, Qt::red)).bitmapPNGData, 9, 9, project.layers[2].id};
    project.pixelSelection = model::PixelSelection{3, 3, 20, 20, std::nullopt};
    for (std::size_t i = 0; i < project.layers.size(); ++i) {
        for (const double zoom : {0.37, 1.0, 3.0}) {
            CanvasFrame frame = frameOf(project, zoom, 1.5, {130, 120}, {4, 6});
            frame.liveLayerID = project.layers[i].id;
            frame.liveImage = &live;
            // What lies above is composed by itself first: each of its layers rounds once more.
            EXPECT_LE(greatestDifference(painted(frame), bookPainted(frame)), 3) << i;
        }
    }
}

TEST(CanvasRenderer, RepaintsWhatAStrokeTouchedAsIfAllWerePaintedAnew) {
    std::mt19937 random(7);
    PaintProject project = randomProject(400, 300, random);
    for (int i = 0; i < 3; ++i)
        project.layers.push_back(layerOf(randomImage(400, 300, random), 0.5));
    RasterImage live = raster::LayerRasterService::renderLayer(project.layers[3], 400, 300);
    CanvasFrame frame = frameOf(project, 1.0, 1.0, {380, 280}, {-10, 5});
    frame.liveLayerID = project.layers[3].id;
    frame.liveImage = &live;

    CanvasRenderer renderer;
    QImage shown = blankTarget(frame);
    renderer.paint(shown, frame, QRect(0, 0, 380, 280));
    model::PaintStroke stroke;
    stroke.tool = model::PaintTool::pencil;
    stroke.lineWidth = 12;
    stroke.hardness = 20;
    for (int i = 0; i < 12; ++i) {
        stroke.points = {{30.0 * i, 25.0 * i}, {30.0 * i + 30, 25.0 * i + 25}};
        const QRect dirty = raster::LayerRasterService::drawStroke(stroke, live, 400, 300);
        renderer.paint(shown, frame, viewportRect(frame, dirty));
    }
    QImage anew = blankTarget(frame);
    CanvasRenderer().paint(anew, frame, anew.rect());
    EXPECT_EQ(shown, anew);
}

TEST(CanvasRenderer, NoticesThatTheLayersAroundTheLiveOneChanged) {
    std::mt19937 random(8);
    PaintProject project = randomProject(64, 64, random);
    project.layers.push_back(layerOf(randomImage(64, 64, random)));
    const RasterImage live = randomImage(64, 64, random);
    CanvasFrame frame = frameOf(project, 1.0, 1.0, {70, 70}, {0, 0});
    frame.liveLayerID = project.layers.back().id;
    frame.liveImage = &live;
    CanvasRenderer renderer;
    const auto paintedAgain = [&] {
        QImage target = blankTarget(frame);
        renderer.paint(target, frame, target.rect());
        return target;
    };
    EXPECT_EQ(paintedAgain(), painted(frame));
    project.layers[0].opacity = 0.1;
    EXPECT_EQ(paintedAgain(), painted(frame));
    project.layers[1].isVisible = true;
    EXPECT_EQ(paintedAgain(), painted(frame));
    project.layers[2] = layerOf(randomImage(64, 64, random));
    EXPECT_EQ(paintedAgain(), painted(frame));
    frame.canvasOrigin = {3, 4};
    EXPECT_EQ(paintedAgain(), painted(frame));
    frame.zoomScale = 2.0;
    EXPECT_EQ(paintedAgain(), painted(frame));
    frame.devicePixelRatio = 1.25;
    EXPECT_EQ(paintedAgain(), painted(frame));
    frame.liveLayerID = project.layers[0].id;
    EXPECT_EQ(paintedAgain(), painted(frame));
    frame.liveLayerID.reset();
    frame.liveImage = nullptr;
    EXPECT_EQ(paintedAgain(), painted(frame));
}

TEST(CanvasRenderer, KeepsNoShareOfTheLiveImage) {
    std::mt19937 random(9);
    PaintProject project = randomProject(32, 32, random);
    RasterImage live = randomImage(32, 32, random);
    const std::uint8_t* const pixels = live.row(0);
    CanvasFrame frame = frameOf(project, 1.0, 1.0, {32, 32}, {0, 0});
    frame.liveLayerID = project.layers[3].id;
    frame.liveImage = &live;
    CanvasRenderer renderer;
    QImage target = blankTarget(frame);
    renderer.paint(target, frame, target.rect());
    EXPECT_EQ(live.mutableRow(0), pixels);
}

TEST(CanvasRenderer, ShowsFloatingPixelsAtTheSelectionInWholePixels) {
    std::mt19937 random(10);
    PaintProject project = projectOf(
        20, 20, {layerOf(randomImage(20, 20, random), 0.7), layerOf(randomImage(20, 20, random))});
    const RasterImage floating = randomImage(3, 2, random);
    project.floatingSelection =
        model::FloatingPixelSelection{*layerOf(floating).bitmapPNGData, 3, 2, project.layers[0].id};
    for (const QRectF& rect :
         {QRectF(2.9, 3.9, 6.9, 4.9), QRectF(-2.9, -1.5, 9, 9), QRectF(9, 9, -4, -6),
          QRectF(5, 5, 0.4, 0.4), QRectF(15, 15, 40, 40), QRectF(1e300, 0, 5, 5)}) {
        project.pixelSelection =
            model::PixelSelection{rect.x(), rect.y(), rect.width(), rect.height(), std::nullopt};
        const CanvasFrame frame = frameOf(project, 2.0, 1.0, {45, 45}, {2, 2});
        EXPECT_EQ(painted(frame), bookPainted(frame)) << rect.x();
    }
}

TEST(CanvasRenderer, ShowsNoFloatingPixelsWithoutASelectionOrOfAHiddenLayer) {
    std::mt19937 random(11);
    PaintProject project =
        projectOf(8, 8, {layerOf(randomImage(8, 8, random)), layerOf(randomImage(8, 8, random))});
    const QImage plain = painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0}));
    project.floatingSelection = model::FloatingPixelSelection{
        *layerOf(filledImage(8, 8, Qt::red)).bitmapPNGData, 8, 8, project.layers[1].id};
    EXPECT_EQ(painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})), plain);
    project.pixelSelection = model::PixelSelection{0, 0, 8, 8, std::nullopt};
    EXPECT_EQ(painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})),
              bookPainted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})));
    project.layers[1].isVisible = false;
    project.floatingSelection->pngData = model::PngBytes(QByteArrayLiteral("torn"));
    const CanvasFrame frame = frameOf(project, 1.0, 1.0, {8, 8}, {0, 0});
    EXPECT_EQ(painted(frame), bookPainted(frame));
}

TEST(CanvasRenderer, DrawsNothingForALayerThatCannotBeDecoded) {
    PaintProject project = projectOf(8, 8, {PaintLayer()});
    const QImage plain = painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0}));
    project.layers[0].bitmapPNGData = model::PngBytes(QByteArrayLiteral("torn"));
    EXPECT_EQ(painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})), plain);
}

TEST(CanvasRenderer, EndsAFractionalCanvasWhereItEnds) {
    std::mt19937 random(12);
    const PaintProject project = projectOf(10.6, 7.3, {layerOf(randomImage(11, 7, random))});
    for (const double zoom : {1.0, 2.5, 8.0}) {
        const CanvasFrame frame = frameOf(project, zoom, 1.25, {100, 70}, {3, 3});
        EXPECT_EQ(painted(frame), bookPainted(frame));
    }
}

TEST(CanvasRenderer, ShowsTheInnerHalfOfABorderOneCanvasPixelWide) {
    const PaintProject project = projectOf(10, 10, {layerOf(filledImage(10, 10, Qt::white))});
    CanvasFrame frame = frameOf(project, 8.0, 1.0, {100, 100}, {10, 10});
    frame.secondaryLabelColor = Qt::black;
    const QImage image = painted(frame);
    const QRgb line = qRgb(209, 209, 209);
    const QRgb clear = qRgb(255, 255, 255);
    for (const int inside : {10, 13, 86, 89}) {
        EXPECT_EQ(image.pixel(inside, 50), line) << inside;
        EXPECT_EQ(image.pixel(50, inside), line) << inside;
    }
    for (const int inside : {14, 50, 85}) {
        EXPECT_EQ(image.pixel(inside, 50), clear) << inside;
        EXPECT_EQ(image.pixel(50, inside), clear) << inside;
    }
    EXPECT_EQ(image.pixel(10, 10), line);
    EXPECT_EQ(image.pixel(9, 50), QColor(Qt::magenta).rgb());
}

TEST(PixelGrid, ShowsWhenAtMost240PixelsAreVisibleAlongEachAxis) {
    const PaintProject large = projectOf(4096, 4096, {});
    const PaintProject small = projectOf(240, 240, {});
    const PaintProject wide = projectOf(241, 10, {});
    const auto shows = [](const PaintProject& project, double zoom, QSizeF viewport,
                          bool isAskedFor = true) {
        CanvasFrame frame = frameOf(project, zoom, 1.0, viewport, {0, 0});
        frame.showsPixelGrid = isAskedFor;
        return shouldDrawPixelGrid(frame);
    };
    EXPECT_TRUE(shows(large, 8.0, {1920, 1080}));
    EXPECT_FALSE(shows(large, 7.9, {1920, 1080}));
    EXPECT_TRUE(shows(large, 1.0, {240, 240}));
    EXPECT_FALSE(shows(large, 1.0, {241, 240}));
    EXPECT_TRUE(shows(small, 0.1, {1920, 1080}));
    EXPECT_FALSE(shows(wide, 1.0, {1920, 1080}));
    EXPECT_FALSE(shows(large, 8.0, {1920, 1080}, false));
    EXPECT_FALSE(shows(large, 0.0, {100, 100}));
}

TEST(PixelGrid, DrawsOnePointWideLinesBetweenCanvasPixels) {
    const PaintProject project = projectOf(6, 5, {layerOf(filledImage(6, 5, Qt::white))});
    for (const int ratio : {1, 2}) {
        CanvasFrame frame = frameOf(project, 8.0, ratio, {60, 60}, {4, 4});
        frame.showsPixelGrid = true;
        const QImage image = painted(frame);
        // A line of two device pixels stands on either side of the border between the pixels.
        const auto isLine = [&](int device) {
            const int fromEdge = device - 4 * ratio;
            return ratio == 1 ? fromEdge % 8 == 0 : (fromEdge + 1) % 16 < 2;
        };
        for (int y = 4 * ratio; y < 44 * ratio; ++y)
            for (int x = 4 * ratio; x < 52 * ratio; ++x)
                ASSERT_EQ(image.pixel(x, y) == qRgb(199, 199, 199), isLine(x) || isLine(y))
                    << x << ' ' << y;
    }
}

TEST(ViewportRect, HoldsEveryPointThatShowsTheCanvasRect) {
    const PaintProject project = projectOf(100, 100, {});
    EXPECT_EQ(viewportRect(frameOf(project, 2.0, 1.0, {50, 50}, {10, 20}), QRectF(1, 2, 3, 4)),
              QRect(12, 24, 6, 8));
    EXPECT_EQ(viewportRect(frameOf(project, 0.5, 1.0, {50, 50}, {0, 0}), QRectF(1, 1, 2, 2)),
              QRect(0, 0, 2, 2));
    // Device pixel 1 of 1.25 a point begins in point 0.
    EXPECT_EQ(viewportRect(frameOf(project, 1.0, 1.25, {50, 50}, {0, 0}), QRectF(1, 1, 1, 1)),
              QRect(0, 0, 3, 3));
}

TEST(CanvasRenderer, PaintsNothingWithoutAProjectOrAZoom) {
    const PaintProject project = projectOf(8, 8, {PaintLayer()});
    CanvasFrame frame = frameOf(project, 0.0, 1.0, {8, 8}, {0, 0});
    EXPECT_EQ(painted(frame), blankTarget(frame));
    frame.zoomScale = 1.0;
    frame.project = nullptr;
    EXPECT_EQ(painted(frame), blankTarget(frame));
}

} // namespace
} // namespace quillabrae::canvas
