// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BlendKernels.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

TEST(ByteProduct, IsTheRoundedProductOfEveryTwoBytes) {
    for (unsigned x = 0; x < 256; ++x)
        for (unsigned y = 0; y < 256; ++y)
            ASSERT_EQ(byteProduct(x, y), bookProduct(static_cast<int>(x), static_cast<int>(y)));
}

/// Runs of every length up to a few vectors, so that whole vectors and rests are both met.
class BlendRuns : public testing::TestWithParam<int> {
protected:
    int count() const { return GetParam(); }
    std::size_t size() const { return static_cast<std::size_t>(count()); }
    std::vector<std::uint8_t> randomAlpha() {
        std::vector<std::uint8_t> alpha(size());
        std::uniform_int_distribution<int> byte(0, 255);
        for (std::uint8_t& each : alpha) each = static_cast<std::uint8_t>(byte(m_random));
        return alpha;
    }

    std::mt19937 m_random{7};
};

TEST_P(BlendRuns, SourceOverAgreesWithTheBookForEveryFraction) {
    const RasterImage source = randomImage(count(), 1, m_random);
    const RasterImage under = randomImage(count(), 1, m_random);
    for (int fraction = 0; fraction < 256; ++fraction) {
        RasterImage drawn = under;
        sourceOverPixels(drawn.mutableRow(0), source.row(0), size(),
                         static_cast<std::uint8_t>(fraction));
        for (int x = 0; x < count(); ++x)
            ASSERT_EQ(pixelAt(drawn, x, 0),
                      bookSourceOver(pixelAt(under, x, 0), pixelAt(source, x, 0), fraction));
    }
}

TEST_P(BlendRuns, SourceOverOfAColorScalesItByTheAlphaOfEachPixel) {
    const RasterImage under = randomImage(count(), 1, m_random);
    const std::vector<std::uint8_t> alpha = randomAlpha();
    RasterImage drawn = under;
    sourceOverColor(drawn.mutableRow(0), alpha.data(), size(), {200, 3, 77, 12});
    for (int x = 0; x < count(); ++x)
        ASSERT_EQ(pixelAt(drawn, x, 0), bookSourceOver(pixelAt(under, x, 0), {200, 3, 77, 255},
                                                       alpha[static_cast<std::size_t>(x)]));
}

TEST_P(BlendRuns, SourceOverOfAFlatColorUsesItsOwnAlpha) {
    const RasterImage under = randomImage(count(), 1, m_random);
    for (const std::uint8_t alpha : std::array<std::uint8_t, 3>{0, 99, 255}) {
        RasterImage drawn = under;
        sourceOverColor(drawn.mutableRow(0), size(), {200, 3, 77, alpha});
        for (int x = 0; x < count(); ++x)
            ASSERT_EQ(pixelAt(drawn, x, 0),
                      bookSourceOver(pixelAt(under, x, 0), {200, 3, 77, 255}, alpha));
    }
}

TEST_P(BlendRuns, DestinationOutKeepsWhatTheAlphaLeaves) {
    const RasterImage under = randomImage(count(), 1, m_random);
    const std::vector<std::uint8_t> alpha = randomAlpha();
    RasterImage drawn = under;
    RasterImage flat = under;
    destinationOutPixels(drawn.mutableRow(0), alpha.data(), size());
    destinationOutPixels(flat.mutableRow(0), size(), 77);
    for (int x = 0; x < count(); ++x) {
        const auto kept = [&](int removed) {
            const Pixel p = pixelAt(under, x, 0);
            return Pixel{bookProduct(p.red, 255 - removed), bookProduct(p.green, 255 - removed),
                         bookProduct(p.blue, 255 - removed), bookProduct(p.alpha, 255 - removed)};
        };
        ASSERT_EQ(pixelAt(drawn, x, 0), kept(alpha[static_cast<std::size_t>(x)]));
        ASSERT_EQ(pixelAt(flat, x, 0), kept(77));
    }
}

TEST_P(BlendRuns, SwappingRedAndBlueTwiceChangesNothing) {
    const RasterImage image = randomImage(count(), 1, m_random);
    RasterImage swapped = image;
    swapRedAndBlue(image.row(0), swapped.mutableRow(0), size());
    for (int x = 0; x < count(); ++x) {
        const Pixel p = pixelAt(image, x, 0);
        ASSERT_EQ(pixelAt(swapped, x, 0), (Pixel{p.blue, p.green, p.red, p.alpha}));
    }
}

INSTANTIATE_TEST_SUITE_P(Lengths, BlendRuns, testing::Values(1, 2, 5, 7, 8, 9, 15, 16, 17, 40));

} // namespace
} // namespace quillabrae::raster
