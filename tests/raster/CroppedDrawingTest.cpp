// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BlendKernels.h"
#include "raster/CroppedDrawing.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

namespace quillabrae::raster {
namespace {

/// A picture of which a random part is not left out; now and then all of it.
CroppedImage randomCrop(std::mt19937& random) {
    const auto upTo = [&](int most) { return std::uniform_int_distribution(1, most)(random); };
    const QSize whole(upTo(60), upTo(60));
    const bool isWhole = random() % 5 == 0;
    const int width = isWhole ? whole.width() : upTo(whole.width());
    const int height = isWhole ? whole.height() : upTo(whole.height());
    const QPoint origin(upTo(whole.width() - width + 1) - 1, upTo(whole.height() - height + 1) - 1);
    return {randomImage(width, height, random), origin, whole};
}

/// What the picture shows at a pixel of its own, margins and all.
Pixel shownAt(const CroppedImage& picture, int x, int y) {
    if (!picture.part().contains(x, y)) return {};
    return pixelAt(picture.image, x - picture.origin.x(), y - picture.origin.y());
}

int sourceOf(int position, int sourceCount, int count) {
    return (2 * position + 1) * sourceCount / (2 * count);
}

TEST(CroppedDrawing, DrawsWhatTheWholePictureShows) {
    std::mt19937 random(311);
    for (int round = 0; round < 150; ++round) {
        const CroppedImage picture = randomCrop(random);
        const QSize whole = picture.wholeSize;
        const bool isStretched = round % 3 != 0;
        const int width = isStretched ? 1 + static_cast<int>(random() % 90) : whole.width();
        const int height = isStretched ? 1 + static_cast<int>(random() % 90) : whole.height();
        const RasterImage under = randomImage(width, height, random);
        const double fraction = round % 2 == 0 ? 1.0 : static_cast<double>(random() % 256) / 255;
        RasterImage drawn = under;
        drawCropped(drawn, picture, fraction);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(pixelAt(drawn, x, y),
                          bookSourceOver(pixelAt(under, x, y),
                                         shownAt(picture, sourceOf(x, whole.width(), width),
                                                 sourceOf(y, whole.height(), height)),
                                         unitByte(fraction)))
                    << round << ": " << x << ' ' << y;
    }
}

TEST(CroppedDrawing, SamplesWithinAreThoseThatShowAPart) {
    std::mt19937 random(312);
    int emptyOnes = 0;
    for (int round = 0; round < 3'000; ++round) {
        const int sourceCount = 1 + static_cast<int>(random() % 80);
        const int count = 1 + static_cast<int>(random() % 100);
        // The target may begin before what is drawn on, and end behind it.
        const int start = static_cast<int>(random() % 40) - 20;
        const AxisSamples whole = stretchSamples(sourceCount, start, count, 50);
        const int first = static_cast<int>(random() % 60) - 5;
        const int partCount = static_cast<int>(random() % 40);
        const AxisSamples part = samplesWithin(whole, first, partCount);
        std::vector<std::pair<int, int>> expected;
        for (int i = 0; i < static_cast<int>(whole.source.size()); ++i) {
            const int source = whole.source[static_cast<std::size_t>(i)];
            if (source >= first && source < first + partCount)
                expected.emplace_back(whole.first + i, source - first);
        }
        std::vector<std::pair<int, int>> given;
        for (int i = 0; i < static_cast<int>(part.source.size()); ++i)
            given.emplace_back(part.first + i, part.source[static_cast<std::size_t>(i)]);
        ASSERT_EQ(given, expected) << round;
        if (expected.empty()) ++emptyOnes;
    }
    EXPECT_GT(emptyOnes, 100);
    EXPECT_LT(emptyOnes, 2'000);
}

TEST(CroppedDrawing, APictureThatIsNotThereDrawsNothing) {
    std::mt19937 random(313);
    const RasterImage under = randomImage(20, 10, random);
    RasterImage drawn = under;
    drawCropped(drawn, CroppedImage());
    EXPECT_TRUE(drawn == under);
}

} // namespace
} // namespace quillabrae::raster
