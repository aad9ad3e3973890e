// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"
#include "raster/LayerRasterServiceLayers.h"
#include "raster/Parallel.h"
#include "raster/PngCodec.h"
#include "store/FakeWork.h"
#include "store/LayerRewriting.h"
#include "store/ProjectLayers.h"
#include "support/PeakMemory.h"
#include "support/Sanitizer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <vector>

namespace quillabrae::store {
namespace {

using raster::RasterImage;

/// Layers of one white pixel row each, which differ from one another.
model::PaintProject projectOf(int layerCount, int side) {
    model::PaintProject project;
    project.canvasWidth = project.canvasHeight = side;
    for (int i = 0; i < layerCount; ++i) {
        RasterImage image(side, side);
        std::memset(image.mutableRow(i % side), 255, image.stride());
        project.layers.push_back(emptyLayer(QStringLiteral("Layer %1").arg(i)));
        project.layers.back().bitmapPNGData = raster::encodePng(image);
    }
    return project;
}

CanvasRewrite keepingAll(int side) {
    return {QStringLiteral("Resize"), QStringLiteral("Resizing image"), QSizeF(side, side), 96,
            [](const RasterImage& picture) { return picture; }};
}

TEST(LayerRewriting, EveryLayerIsRewrittenInItsPlace) {
    model::PaintProject project = projectOf(20, 32);
    CanvasRewrite rewrite = keepingAll(40);
    rewrite.rewritten = [](const RasterImage& picture) {
        return raster::LayerRasterService::transformedImage(picture, 40, 40, QRectF(0, 8, 32, 32));
    };
    FakeWork work;
    EXPECT_EQ(rewriteLayers(project, rewrite, work), RewriteOutcome::done);
    for (int i = 0; i < 20; ++i) {
        const RasterImage picture =
            raster::decodePng(*project.layers[static_cast<std::size_t>(i)].bitmapPNGData);
        ASSERT_EQ(picture.height(), 40);
        EXPECT_EQ(picture.row(i + 8)[0], 255) << i;
        EXPECT_EQ(picture.row(i + 7)[0], 0) << i;
    }
    EXPECT_EQ(work.titles, QStringList(QStringLiteral("Resizing image")));
}

TEST(LayerRewriting, TheWorkSaysHowFarItIs) {
    FakeWork work;
    std::atomic<int> steps = 0;
    runSteps(work, QStringLiteral("Counting"), 10, [&](std::size_t) { ++steps; });
    EXPECT_EQ(steps, 10);
    const raster::ParallelThreadLimit alone(1);
    std::vector<double> fractions;
    runSteps(work, QStringLiteral("Counting"), 4,
             [&](std::size_t) { fractions.push_back(work.control->fraction()); });
    EXPECT_EQ(fractions, std::vector<double>({-1.0, 0.25, 0.5, 0.75}));
}

TEST(LayerRewriting, CancelledOnTheWayItLeavesEveryLayerAsItWas) {
    for (int last = 0; last < 4; ++last) {
        model::PaintProject project = projectOf(5, 16);
        const model::PaintProject before = project;
        FakeWork work;
        std::atomic<int> steps = 0;
        CanvasRewrite rewrite = keepingAll(16);
        rewrite.rewritten = [&](const RasterImage&) {
            if (steps++ == last) work.control->cancel();
            return RasterImage(16, 16);
        };
        const raster::ParallelThreadLimit alone(1);
        EXPECT_EQ(rewriteLayers(project, rewrite, work), RewriteOutcome::cancelled);
        EXPECT_EQ(steps, last + 1);
        EXPECT_EQ(project, before);
    }
}

TEST(LayerRewriting, ALayerThatComesToNothingFailsTheWhole) {
    model::PaintProject project = projectOf(5, 16);
    const model::PaintProject before = project;
    std::atomic<int> steps = 0;
    CanvasRewrite rewrite = keepingAll(16);
    rewrite.rewritten = [&](const RasterImage& picture) {
        return steps++ == 3 ? RasterImage() : picture;
    };
    EXPECT_EQ(rewriteLayers(project, rewrite, platform::directWorkRunner()),
              RewriteOutcome::failed);
    EXPECT_EQ(project, before);
    EXPECT_EQ(rewriteLayers(project, keepingAll(1'000'000), platform::directWorkRunner()),
              RewriteOutcome::failed);
    EXPECT_EQ(project, before);
}

TEST(LayerRewriting, HoldsNoMoreThanTwoPicturesForEachThread) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    // Below the size of which freed memory is kept for the next picture.
    constexpr int side = 512;
    constexpr std::size_t pictureBytes = std::size_t{side} * side * 4;
    model::PaintProject project = projectOf(64, side);
    raster::clearDecodeCache();
    // What is remembered is another's business; here it would be half of it.
    raster::setDecodeCacheBudget(pictureBytes);
    const tests::PeakMemory memory;
    CanvasRewrite rewrite = keepingAll(side);
    rewrite.rewritten = [](const RasterImage& picture) {
        return raster::LayerRasterService::transformedImage(picture, side, side,
                                                            QRectF(0.5, 0.5, side, side));
    };
    EXPECT_EQ(rewriteLayers(project, rewrite, platform::directWorkRunner()), RewriteOutcome::done);
    const auto threads = static_cast<std::size_t>(raster::parallelThreadCount());
    constexpr std::size_t slack = std::size_t{8} * 1024 * 1024;
    EXPECT_LT(memory.growth(), static_cast<qint64>(threads * 2 * pictureBytes + slack));
    EXPECT_EQ(raster::decodeCacheSize(), 0U);
    raster::setDecodeCacheBudget(std::size_t{512} * 1024 * 1024);
}

} // namespace
} // namespace quillabrae::store
