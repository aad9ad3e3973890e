// SPDX-License-Identifier: GPL-3.0-or-later
// What an effect takes beside the picture that it is given: its result, and no more than its
// header says to work in.
#include "effects/EffectTest.h"
#include "effects/PluginEffectService.h"
#include "raster/PixelMemory.h"
#include "support/PeakMemory.h"
#include "support/Sanitizer.h"

namespace quillabrae::effects {
namespace {

constexpr int side = 2048;
constexpr qint64 picture = qint64{4} * side * side;
/// Rows that a thread works with, and threads.
constexpr qint64 smallThings = 6 << 20;

struct Share {
    QuillabraePluginEffect effect;
    /// Of the picture's memory.
    double atWork;
};

class EffectsMemory : public testing::TestWithParam<Share> {};

TEST_P(EffectsMemory, IsBounded) {
    if (tests::hasSanitizer) GTEST_SKIP() << "a sanitizer keeps memory of its own";
    // Half of it translucent: what is opaque needs less.
    RasterImage image = raster::filledImage(side, side, {200, 160, 90, 255});
    for (int y = 0; y < side; y += 2)
        for (int x = 0; x < side; ++x) raster::setPixel(image, x, y, {90, 20, 60, 120});
    raster::releaseKeptPixelMemory();
    const tests::PeakMemory memory;
    const RasterImage result = PluginEffectService::apply(GetParam().effect, image);
    ASSERT_FALSE(result.isNull());
    EXPECT_LE(memory.growth(),
              picture + static_cast<qint64>(GetParam().atWork * double(picture)) + smallThings);
}

INSTANTIATE_TEST_SUITE_P(OfEvery, EffectsMemory,
                         testing::Values(Share{QuillabraePluginEffect::bloom, 0.25},
                                         Share{QuillabraePluginEffect::colorLift, 0.0},
                                         Share{QuillabraePluginEffect::comicInk, 1.0},
                                         Share{QuillabraePluginEffect::monochrome, 0.0},
                                         Share{QuillabraePluginEffect::posterize, 0.0},
                                         Share{QuillabraePluginEffect::sharpen, 0.0}),
                         [](const auto& share) {
                             return rawText(share.param.effect).toStdString();
                         });

} // namespace
} // namespace quillabrae::effects
