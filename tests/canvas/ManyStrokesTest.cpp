// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/StrokeFixture.h"
#include "raster/PixelMemory.h"
#include "raster/PngCodec.h"

#include <array>
#include <random>
#include <vector>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::PaintTool;

/// Many drawings on a canvas that is large enough for its memory to be used again.
class ManyStrokes : public Stroke {
protected:
    enum class EarlierPixels { kept, forgotten };

    ManyStrokes() {
        project().canvasWidth = 1200.0;
        project().canvasHeight = 900.0;
        view.projectChanged();
    }
    ~ManyStrokes() override { raster::releaseKeptPixelMemory(); }

    /// What the layer holds after each of them.
    std::vector<model::PngBytes> drawings(EarlierPixels earlier) {
        layer().bitmapPNGData.reset();
        std::mt19937 random(17);
        std::vector<model::PngBytes> stored;
        for (int drawing = 0; drawing < 40; ++drawing) {
            if (earlier == EarlierPixels::forgotten) raster::releaseKeptPixelMemory();
            host.tools.selectedTool = tools[random() % tools.size()];
            host.tools.primaryColor = random() % 2 == 0 ? red : blue;
            std::vector<CanvasPoint> points;
            for (int point = 0; point < 3; ++point)
                points.push_back({double(random() % 1200), double(random() % 900)});
            draw(points);
            stored.push_back(*layer().bitmapPNGData);
            // Now and then back to what was there some drawings ago.
            if (random() % 5 == 0) layer().bitmapPNGData = stored[random() % stored.size()];
        }
        return stored;
    }

    static constexpr std::array tools{PaintTool::paintbrush, PaintTool::pencil, PaintTool::eraser,
                                      PaintTool::lineCurve, PaintTool::rectangle};
};

TEST_F(ManyStrokes, NothingShowsThroughOfPixelsThatAreUsedAgain) {
    const auto kept = drawings(EarlierPixels::kept);
    raster::clearDecodeCache();
    const auto forgotten = drawings(EarlierPixels::forgotten);
    ASSERT_EQ(kept.size(), forgotten.size());
    for (std::size_t i = 0; i < kept.size(); ++i) {
        EXPECT_TRUE(kept[i] == forgotten[i]) << i;
        EXPECT_TRUE(kept[i] == raster::encodePng(raster::decodePng(kept[i]))) << i;
    }
}

} // namespace
} // namespace quillabrae::canvas
