// SPDX-License-Identifier: GPL-3.0-or-later
// Layers whose pixels are more than may be held at once.
#include "canvas/CanvasDescription.h"
#include "canvas/CanvasFrameFixtures.h"
#include "canvas/CanvasRenderer.h"
#include "raster/DecodeCache.h"
#include "support/PeakMemory.h"
#include "support/Sanitizer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace quillabrae::canvas {
namespace {

using model::PaintProject;
using raster::RasterImage;
using namespace fixtures;

/// While alive, no more than that is kept of what was decoded, and nothing from before.
class SmallBudget {
public:
    explicit SmallBudget(std::size_t bytes) {
        raster::clearDecodeCache();
        raster::setDecodeCacheBudget(bytes);
    }
    ~SmallBudget() { raster::setDecodeCacheBudget(m_former); }
    SmallBudget(const SmallBudget&) = delete;
    SmallBudget& operator=(const SmallBudget&) = delete;

private:
    std::size_t m_former = raster::decodeCacheBudget();
};

/// Eleven visible layers, one of which has floating pixels.
PaintProject tallProject(std::mt19937& random) {
    PaintProject project = randomProject(140, 90, random);
    for (int i = 0; i < 8; ++i)
        project.layers.push_back(layerOf(randomImage(140, 90, random), 0.3 + 0.1 * i));
    project.floatingSelection = model::FloatingPixelSelection{
        *layerOf(randomImage(20, 20, random)).bitmapPNGData, 20, 20, project.layers[5].id};
    project.pixelSelection = model::PixelSelection{30, 20, 50, 60, std::nullopt};
    return project;
}

constexpr std::size_t pictureBytes = std::size_t{140} * 90 * 4;

TEST(LayerGroups, ComeToThePixelsOfAllLayersAtOnce) {
    std::mt19937 random(21);
    const PaintProject project = tallProject(random);
    for (const double zoom : {0.37, 1.0, 2.5}) {
        const CanvasFrame frame = frameOf(project, zoom, 1.5, {130, 110}, {-9, 4});
        const QImage atOnce = painted(frame);
        EXPECT_EQ(atOnce, bookPainted(frame));
        for (const std::size_t pictures : {0, 2, 5, 9}) {
            const SmallBudget budget(2 * pictures * pictureBytes);
            EXPECT_EQ(painted(frame), atOnce) << zoom << ' ' << pictures;
        }
    }
}

TEST(LayerGroups, PaintAPartAndLeaveTheRest) {
    std::mt19937 random(22);
    const PaintProject project = tallProject(random);
    const CanvasFrame frame = frameOf(project, 1.0, 1.0, {130, 80}, {3, 4});
    const QImage whole = painted(frame);
    const SmallBudget budget(0);
    const QRect dirty(20, 10, 61, 33);
    QImage part = blankTarget(frame);
    CanvasRenderer().paint(part, frame, dirty);
    EXPECT_EQ(part.copy(dirty), whole.copy(dirty));
    EXPECT_EQ(part.pixel(dirty.left() - 1, dirty.top()), QColor(Qt::magenta).rgb());
    EXPECT_EQ(part.pixel(dirty.right(), dirty.bottom() + 1), QColor(Qt::magenta).rgb());
}

TEST(LayerGroups, SurroundALiveImageAsAllLayersAtOnceDo) {
    std::mt19937 random(23);
    const PaintProject project = tallProject(random);
    const RasterImage live = randomImage(140, 90, random);
    for (const std::size_t layer : {0, 4, 5, 11}) {
        CanvasFrame frame = frameOf(project, 1.25, 1.0, {160, 120}, {-9, 4});
        frame.liveLayerID = project.layers[layer].id;
        frame.liveImage = &live;
        const QImage atOnce = painted(frame);
        for (const std::size_t pictures : {0, 2, 5}) {
            const SmallBudget budget(2 * pictures * pictureBytes);
            EXPECT_EQ(painted(frame), atOnce) << layer << ' ' << pictures;
        }
    }
}

TEST(LayerGroups, HaveTheColourOfAllLayersAtOnce) {
    std::mt19937 random(24);
    const PaintProject project = tallProject(random);
    const model::CanvasPoint point{40.2, 33.7};
    const auto atOnce = shownColor(project, point);
    const SmallBudget budget(0);
    EXPECT_EQ(shownColor(project, point), atOnce);
}

class LayerGroupsMemory : public testing::Test {
protected:
    static constexpr int side = 512;
    static constexpr int layerCount = 64;
    static constexpr std::size_t layerBytes = std::size_t{side} * side * 4;

    LayerGroupsMemory() : m_project(projectOf(side, side, {})) {
        const raster::DecodeCacheReadOnly readOnly;
        for (int i = 0; i < layerCount; ++i) {
            RasterImage image(side, side);
            std::memset(image.mutableBytes().data(), 2 * i, image.byteCount());
            m_project.layers.push_back(layerOf(image));
        }
    }

    /// Of memory, for what `work` did with 64 layers of which 8 may be remembered.
    template <typename Work>
    static qint64 growthOf(const Work& work) {
        const SmallBudget budget(8 * layerBytes);
        const tests::PeakMemory memory;
        work();
        return memory.growth();
    }

    /// What may be remembered and what is composed at once, and something for threads and tables.
    static constexpr qint64 bound = 24 * static_cast<qint64>(layerBytes);

    PaintProject m_project;
};

TEST_F(LayerGroupsMemory, AFrameHoldsFewPicturesOfManyLayers) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    const CanvasFrame frame = frameOf(m_project, 0.5, 1.0, {300, 300}, {0, 0});
    EXPECT_LT(growthOf([&] { painted(frame); }), bound);
}

TEST_F(LayerGroupsMemory, AFrameWithALiveImageHoldsFewPicturesOfManyLayers) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    const RasterImage live = filledImage(side, side, Qt::red);
    CanvasFrame frame = frameOf(m_project, 0.5, 1.0, {300, 300}, {0, 0});
    frame.liveLayerID = m_project.layers[layerCount / 2].id;
    frame.liveImage = &live;
    EXPECT_LT(growthOf([&] { painted(frame); }), bound);
}

TEST_F(LayerGroupsMemory, TheColourOfAPlaceHoldsFewPicturesOfManyLayers) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    EXPECT_LT(growthOf([&] { shownColor(m_project, {5.0, 5.0}); }), bound);
}

} // namespace
} // namespace quillabrae::canvas
