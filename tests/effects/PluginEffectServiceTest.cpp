// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/EffectTest.h"
#include "effects/PluginEffectService.h"
#include "effects/Posterize.h"
#include "raster/LayerRasterService.h"

namespace quillabrae::effects {
namespace {

namespace Raster = raster::LayerRasterService;

class EveryEffect : public testing::TestWithParam<QuillabraePluginEffect> {};

TEST_P(EveryEffect, RewritesAFullyTransparentLayer) {
    model::PaintLayer layer;
    EXPECT_TRUE(PluginEffectService::apply(GetParam(), layer, 5, 4));
    EXPECT_TRUE(layer.bitmapPNGData.has_value());
    EXPECT_TRUE(Raster::renderLayer(layer, 5, 4) == RasterImage(5, 4));
}

TEST_P(EveryEffect, KeepsTheSizeOfTheCanvas) {
    std::mt19937 random(41);
    for (const QSize size : {QSize(1, 1), QSize(1, 9), QSize(7, 1), QSize(33, 18)}) {
        model::PaintLayer layer =
            raster::layerOf(raster::randomImage(size.width(), size.height(), random));
        EXPECT_TRUE(PluginEffectService::apply(GetParam(), layer, size.width(), size.height()));
        const RasterImage result = Raster::renderLayer(layer, size.width(), size.height());
        EXPECT_EQ(QSize(result.width(), result.height()), size);
    }
}

TEST_P(EveryEffect, LeavesOpacityOut) {
    std::mt19937 random(42);
    const RasterImage image = raster::randomImage(20, 20, random);
    model::PaintLayer full = raster::layerOf(image);
    model::PaintLayer faint = raster::layerOf(image, 0.25);
    ASSERT_TRUE(PluginEffectService::apply(GetParam(), full, 20, 20));
    ASSERT_TRUE(PluginEffectService::apply(GetParam(), faint, 20, 20));
    EXPECT_TRUE(Raster::renderLayer(full, 20, 20) == Raster::renderLayer(faint, 20, 20));
    EXPECT_EQ(faint.opacity, 0.25);
}

TEST_P(EveryEffect, FailsOnACanvasThatIsTooLargeAndLeavesTheLayer) {
    model::PaintLayer layer = raster::layerOf(raster::filledImage(3, 3, {9, 9, 9, 9}));
    const model::PaintLayer before = layer;
    EXPECT_FALSE(PluginEffectService::apply(GetParam(), layer, 1e9, 1e9));
    EXPECT_EQ(layer, before);
}

INSTANTIATE_TEST_SUITE_P(PluginEffectService, EveryEffect, testing::ValuesIn(allPluginEffects()),
                         [](const auto& effect) { return rawText(effect.param).toStdString(); });

TEST(PluginEffectService, RunsOverTheCanvasAndNotTheStoredSize) {
    model::PaintLayer layer = raster::layerOf(raster::filledImage(2, 2, {200, 100, 30, 255}));
    ASSERT_TRUE(PluginEffectService::apply(QuillabraePluginEffect::posterize, layer, 6, 4));
    EXPECT_TRUE(Raster::renderLayer(layer, 6, 4) == raster::filledImage(6, 4, {204, 102, 0, 255}));
}

} // namespace
} // namespace quillabrae::effects
