// SPDX-License-Identifier: GPL-3.0-or-later
// Large layers that are mostly transparent, and layers that cannot be seen.
#include "canvas/CanvasFrameFixtures.h"
#include "canvas/CanvasRenderer.h"
#include "raster/CodecCounts.h"
#include "raster/DecodeCache.h"
#include "support/PeakMemory.h"
#include "support/Sanitizer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace quillabrae::canvas {
namespace {

using model::PaintLayer;
using model::PaintProject;
using raster::RasterImage;
using namespace fixtures;

constexpr int width = 8192;
constexpr int height = 600;
constexpr std::size_t layerBytes = std::size_t{width} * height * 4;

/// Noise at that place, and nothing else.
PaintLayer sparseLayer(const QRect& drawn, std::mt19937& random, double opacity = 1.0) {
    RasterImage image(width, height);
    const RasterImage noise = randomImage(drawn.width(), drawn.height(), random);
    for (int y = 0; y < drawn.height(); ++y)
        std::memcpy(image.mutableRow(drawn.top() + y) + 4 * std::ptrdiff_t{drawn.left()},
                    noise.row(y), noise.stride());
    const raster::DecodeCacheReadOnly readOnly;
    return layerOf(image, opacity);
}

class LayerPicturesTest : public testing::Test {
protected:
    LayerPicturesTest() { raster::clearDecodeCache(); }
    ~LayerPicturesTest() override { raster::clearDecodeCache(); }

    QImage paint(const CanvasFrame& frame) { return painted(frame, m_renderer); }
    /// How many layers that takes to be decoded, with nothing remembered.
    std::size_t decodedFor(const CanvasFrame& frame) {
        raster::clearDecodeCache();
        const std::size_t before = raster::codecCounts().decodedFiles;
        paint(frame);
        return raster::codecCounts().decodedFiles - before;
    }

    std::mt19937 m_random{51};
    CanvasRenderer m_renderer;
};

TEST_F(LayerPicturesTest, SparseLayersShowWhatWholeOnesWould) {
    PaintProject project = projectOf(
        width, height,
        {sparseLayer({100, 40, 300, 200}, m_random), sparseLayer({7900, 500, 292, 100}, m_random),
         layerOf(RasterImage(width, height)), sparseLayer({0, 0, 1, 1}, m_random),
         sparseLayer({250, 100, 900, 60}, m_random, 0.4)});
    project.floatingSelection =
        model::FloatingPixelSelection{*sparseLayer({4000, 10, 500, 500}, m_random).bitmapPNGData,
                                      width, height, project.layers[1].id};
    project.pixelSelection = model::PixelSelection{50, 20, 3000, 500, std::nullopt};
    for (const double zoom : {0.03, 0.37, 1.0, 2.5}) {
        for (const QPointF origin : {QPointF(5, 5), QPointF(-90.3, -20.8), QPointF(-7800, 0)}) {
            const CanvasFrame frame = frameOf(project, zoom, 1.25, {240, 120}, origin);
            const QImage first = paint(frame);
            EXPECT_EQ(first, bookPainted(frame)) << zoom << ' ' << origin.x();
            EXPECT_EQ(paint(frame), first);
        }
    }
    for (const PaintLayer& layer : project.layers) raster::decodedImage(*layer.bitmapPNGData);
    const CanvasFrame frame = frameOf(project, 0.37, 1.0, {240, 120}, {5, 5});
    EXPECT_EQ(paint(frame), bookPainted(frame));
}

TEST_F(LayerPicturesTest, ALiveImageIsSurroundedBySparseLayers) {
    const PaintProject project = projectOf(
        width, height,
        {sparseLayer({100, 40, 300, 200}, m_random), sparseLayer({200, 90, 292, 100}, m_random),
         sparseLayer({0, 0, 90, 90}, m_random), sparseLayer({250, 100, 900, 60}, m_random),
         sparseLayer({50, 0, 20, 500}, m_random)});
    const RasterImage live(width, height);
    CanvasFrame frame = frameOf(project, 1.0, 1.0, {400, 300}, {-30, 4});
    frame.liveLayerID = project.layers[2].id;
    frame.liveImage = &live;
    EXPECT_LE(greatestDifference(paint(frame), bookPainted(frame)), 3);
}

TEST_F(LayerPicturesTest, WhatIsHiddenIsNotDecoded) {
    PaintProject project = projectOf(300, 200, {});
    for (int i = 0; i < 5; ++i)
        project.layers.push_back(layerOf(filledImage(300, 200, QColor(40 * i, 9, 77))));
    const CanvasFrame frame = frameOf(project, 0.7, 1.0, {250, 150}, {5, 5});
    EXPECT_EQ(decodedFor(frame), 1U);
    EXPECT_EQ(paint(frame), bookPainted(frame));
    project.layers[4].opacity = 0.5;
    EXPECT_EQ(decodedFor(frame), 2U);
    EXPECT_EQ(paint(frame), bookPainted(frame));
    // A hole in the middle: the layer below it is seen where the hole is.
    RasterImage holed = filledImage(300, 200, Qt::green);
    std::memset(holed.mutableRow(100) + 400, 0, 4);
    project.layers[4] = layerOf(holed);
    EXPECT_EQ(decodedFor(frame), 2U);
    EXPECT_EQ(paint(frame), bookPainted(frame));
    const CanvasFrame besideIt = frameOf(project, 1.0, 1.0, {90, 30}, {0, 0});
    EXPECT_EQ(decodedFor(besideIt), 1U);
    EXPECT_EQ(paint(besideIt), bookPainted(besideIt));
}

TEST_F(LayerPicturesTest, WhatIsOutOfSightIsDecodedOnce) {
    PaintProject project = projectOf(width, height, {});
    for (int i = 0; i < 6; ++i)
        project.layers.push_back(sparseLayer({1000 * i, 50, 400, 300}, m_random));
    const CanvasFrame frame = frameOf(project, 1.0, 1.0, {500, 400}, {-950, 0});
    EXPECT_EQ(decodedFor(frame), 6U);
    EXPECT_EQ(decodedFor(frame), 1U);
    EXPECT_EQ(paint(frame), bookPainted(frame));
    const CanvasFrame elsewhere = frameOf(project, 1.0, 1.0, {500, 400}, {-3300, 0});
    EXPECT_EQ(decodedFor(elsewhere), 1U);
    EXPECT_EQ(paint(elsewhere), bookPainted(elsewhere));
}

TEST_F(LayerPicturesTest, ManySparseLayersAreHeldForWhatTheyShow) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    PaintProject project = projectOf(width, height, {});
    for (int i = 0; i < 30; ++i)
        project.layers.push_back(sparseLayer({250 * i, 100 + i, 200, 200}, m_random));
    const CanvasFrame frame = frameOf(project, 0.05, 1.0, {420, 40}, {0, 0});
    paint(frameOf(projectOf(width, height, {}), 0.05, 1.0, {420, 40}, {0, 0}));
    const tests::PeakMemory memory;
    EXPECT_EQ(decodedFor(frame), 30U);
    // All of them, in less than two of them would take.
    EXPECT_LT(memory.growth(), static_cast<qint64>(2 * layerBytes));
    // The next frame decodes nothing.
    const std::size_t before = raster::codecCounts().decodedFiles;
    paint(frame);
    EXPECT_EQ(raster::codecCounts().decodedFiles, before);
}

} // namespace
} // namespace quillabrae::canvas
