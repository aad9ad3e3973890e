// SPDX-License-Identifier: GPL-3.0-or-later
// Paints that memory ends in, and the ones after them.
#include "canvas/CanvasFrameFixtures.h"
#include "canvas/CanvasRenderer.h"
#include "canvas/FrameUnderOverlays.h"
#include "raster/DecodeCache.h"
#include "raster/PixelMemory.h"
#include "support/MemoryRefusal.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <random>

namespace quillabrae::canvas {
namespace {

using model::PaintProject;
using raster::RasterImage;
using namespace fixtures;

class CanvasMemory : public testing::Test {
protected:
    // Of few rows, since there are requests for every one of them.
    CanvasMemory() : m_project(projectOf(300, 20, {})) {
        for (int i = 0; i < 5; ++i)
            m_project.layers.push_back(layerOf(randomImage(300, 20, m_random), 0.5 + 0.1 * i));
        // And of many tiles, though few of them show the canvas.
        m_frame = frameOf(m_project, 1.0, 1.0, {2100, 2100}, {-10, 5});
    }
    ~CanvasMemory() override { raster::clearDecodeCache(); }

    /// Refuses one request after the other, each in a paint of its own, and looks at the paint that
    /// comes next.
    template <typename Paint>
    void expectTheNextPaintToBeWhole(const Paint& paint) const {
        if (!tests::MemoryRefusal::isAvailable()) GTEST_SKIP() << "another allocator is in use";
        // Less than that is what an image takes beside its pixels.
        constexpr std::size_t leastBytes = 256;
        const QRect shown(0, 0, 300, 30);
        const QImage whole = painted(m_frame).copy(shown);
        EXPECT_LE(greatestDifference(whole, bookPainted(m_frame).copy(shown)), 3);
        constexpr std::size_t most = 2000;
        std::size_t number = 0;
        for (bool wasRefused = true; wasRefused; ++number) {
            ASSERT_LT(number, most);
            raster::clearDecodeCache();
            CanvasRenderer renderer;
            QImage target(shown.size(), QImage::Format_RGB32);
            {
                const tests::MemoryRefusal refusal(number + 1, leastBytes);
                try {
                    paint(renderer, target);
                } catch (const std::bad_alloc&) {
                    // The paint is dropped, as any event that memory ends in.
                }
                wasRefused = refusal.hasHappened();
            }
            target.fill(Qt::magenta);
            paint(renderer, target);
            ASSERT_EQ(target, whole) << number;
        }
        EXPECT_GT(number, 5U);
    }

    std::mt19937 m_random{71};
    PaintProject m_project;
    RasterImage m_live = randomImage(300, 20, m_random);
    CanvasFrame m_frame;
};

TEST_F(CanvasMemory, APaintIsWholeAfterOneThatItEndedIn) {
    expectTheNextPaintToBeWhole([this](CanvasRenderer& renderer, QImage& target) {
        renderer.paint(target, m_frame, target.rect());
    });
}

TEST_F(CanvasMemory, APaintAroundALiveImageIsWholeAfterOneThatItEndedIn) {
    m_frame.liveLayerID = m_project.layers[2].id;
    m_frame.liveImage = &m_live;
    expectTheNextPaintToBeWhole([this](CanvasRenderer& renderer, QImage& target) {
        renderer.paint(target, m_frame, target.rect());
    });
}

TEST_F(CanvasMemory, APaintInPointsIsWholeAfterOneThatItEndedIn) {
    expectTheNextPaintToBeWhole([this](CanvasRenderer& renderer, QImage& target) {
        QPainter painter(&target);
        renderer.paint(painter, m_frame, target.rect());
    });
}

TEST(FrameUnderOverlays, AsksAgainForWhatThereWasNoMemoryFor) {
    FrameUnderOverlays frame;
    int paints = 0;
    const auto shown = [&](QRgb color, bool isRefused) {
        const auto paint = [&](QPainter& painter, const QRect& rect) {
            ++paints;
            painter.fillRect(rect, QColor(color));
            if (isRefused) raster::countRefusedPixelRequest();
        };
        return frame.image({20, 10}, 1.0, QRect(2, 3, 5, 4), paint).pixel(4, 4);
    };
    const QRgb red = qRgb(255, 0, 0);
    const QRgb green = qRgb(0, 255, 0);
    EXPECT_EQ(shown(red, true), red);
    EXPECT_EQ(shown(green, false), green);
    EXPECT_EQ(shown(red, false), green);
    EXPECT_EQ(paints, 2);
}

} // namespace
} // namespace quillabrae::canvas
