// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFrameFixtures.h"
#include "canvas/CanvasRenderer.h"
#include "raster/LayerRasterService.h"

#include <gtest/gtest.h>

#include <random>

namespace quillabrae::canvas {
namespace {

using model::PaintProject;
using raster::RasterImage;
using namespace fixtures;

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
    EXPECT_EQ(shown, painted(frame));
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
    const auto paintedAgain = [&] { return painted(frame, renderer); };
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
    painted(frame, renderer);
    EXPECT_EQ(live.mutableRow(0), pixels);
}

} // namespace
} // namespace quillabrae::canvas
