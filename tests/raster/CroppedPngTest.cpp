// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/CodecCounts.h"
#include "raster/DecodeCache.h"
#include "raster/PngBandReader.h"
#include "raster/PngBands.h"
#include "raster/PngCodec.h"
#include "raster/PngDecoder.h"
#include "raster/PngFixtures.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

/// Wide enough for bands of few rows, and just large enough to be cropped.
constexpr int width = 8192;
constexpr int height = 600;

/// A transparent picture with noise in some rectangles, from corner to corner.
RasterImage pictureWith(const std::vector<QRect>& rects, std::mt19937& random) {
    RasterImage image(width, height);
    for (const QRect& rect : rects) {
        const RasterImage noise = randomImage(rect.width(), rect.height(), random);
        for (int y = 0; y < rect.height(); ++y)
            std::memcpy(image.mutableRow(rect.top() + y) + 4 * std::ptrdiff_t{rect.left()},
                        noise.row(y), noise.stride());
        for (const QPoint corner : {rect.topLeft(), rect.bottomRight()})
            setPixel(image, corner.x(), corner.y(), {255, 255, 255, 255});
    }
    return image;
}

TEST(CroppedPng, HoldsWhatThePictureShowsAndNotItsMargins) {
    std::mt19937 random(31);
    const std::vector<std::vector<QRect>> pictures{
        {QRect(3000, 200, 500, 100)},         {QRect(0, 0, 1, 1)},
        {QRect(width - 1, height - 1, 1, 1)}, {QRect(100, 40, 30, 30), QRect(2000, 300, 700, 90)},
        {QRect(width - 50, 0, 50, height)},   {QRect(0, 0, width, 40)},
        {QRect(0, height - 10, width, 10)},
    };
    for (const std::vector<QRect>& rects : pictures) {
        const RasterImage image = pictureWith(rects, random);
        const CroppedImage cropped = decodeCroppedPng(encodePng(image));
        ASSERT_FALSE(cropped.isNull());
        QRect shown;
        for (const QRect& rect : rects) shown |= rect;
        EXPECT_FALSE(cropped.isWhole());
        EXPECT_TRUE(cropped.part().contains(shown)) << shown.left();
        // Columns to the pixel, rows to the band.
        EXPECT_LE(cropped.part().width(), shown.width() + 2);
        EXPECT_LE(cropped.part().height(), shown.height() + 64);
        EXPECT_EQ(cropped.wholeSize, QSize(width, height));
        EXPECT_TRUE(cropped.whole() == image);
    }
}

TEST(CroppedPng, IsOnePixelOfAPictureThatShowsNothing) {
    const CroppedImage cropped = decodeCroppedPng(encodePng(RasterImage(width, height)));
    EXPECT_EQ(cropped.part(), QRect(0, 0, 1, 1));
    EXPECT_TRUE(cropped.whole() == RasterImage(width, height));
}

TEST(CroppedPng, IsWholeWhereMarginsAreLessThanHalf) {
    std::mt19937 random(32);
    const std::vector<std::vector<QRect>> pictures{
        {QRect(0, 0, width, height)},
        {QRect(0, 0, width, height / 2 + 100)},
        {QRect(0, 0, 1, 1), QRect(width - 1, height - 1, 1, 1)},
        // Not in the bands that are looked at first.
        {QRect(0, 35, width, 35), QRect(0, 110, width, 30), QRect(10, 190, width - 20, 300)},
    };
    for (const std::vector<QRect>& rects : pictures) {
        const RasterImage image = pictureWith(rects, random);
        const CroppedImage cropped = decodeCroppedPng(encodePng(image));
        EXPECT_TRUE(cropped.isWhole());
        EXPECT_TRUE(cropped.image == image);
    }
}

TEST(CroppedPng, IsWholeOfASmallPicture) {
    RasterImage image(100, 80);
    std::memset(image.mutableRow(5), 255, 4);
    const CroppedImage cropped = decodeCroppedPng(encodePng(image));
    EXPECT_TRUE(cropped.isWhole());
    EXPECT_TRUE(cropped.image == image);
}

TEST(CroppedPng, IsNullForWhatIsNotReadable) {
    EXPECT_TRUE(decodeCroppedPng({}).isNull());
    EXPECT_TRUE(decodeCroppedPng(model::PngBytes(QByteArrayLiteral("torn"))).isNull());
    std::mt19937 random(33);
    const RasterImage image = pictureWith({QRect(10, 10, 300, 500)}, random);
    const model::PngBytes good = encodePng(image);
    QByteArray bytes = good.toByteArray();
    for (const qsizetype at : {bytes.size() / 3, bytes.size() / 2, bytes.size() - 40}) {
        QByteArray bad = bytes;
        bad[at] = static_cast<char>(bad[at] ^ 0x10);
        EXPECT_TRUE(decodeCroppedPng(model::PngBytes(bad)).isNull()) << at;
        EXPECT_TRUE(decodePng(model::PngBytes(bad)).isNull()) << at;
    }
}

/// Rows of differences that are mostly zero, each with a filter that the bands may have.
std::vector<std::uint8_t> randomBand(std::size_t columns, std::size_t rows, std::mt19937& random) {
    const std::size_t rowSize = 4 * columns;
    std::vector<std::uint8_t> band(rows * (rowSize + 1));
    std::uniform_int_distribution<std::size_t> column(0, columns - 1);
    const bool isOurs = random() % 2 == 0;
    for (std::size_t y = 0; y < rows; ++y) {
        std::uint8_t* const row = band.data() + y * (rowSize + 1);
        row[0] = static_cast<std::uint8_t>(y == 0 ? random() % 2 : random() % (isOurs ? 3 : 5));
        if (random() % 3 == 0) continue;
        const std::size_t first = column(random);
        const std::size_t count = std::min(columns - first, std::size_t{random() % 4});
        std::array<std::uint8_t, 4> sum{};
        for (std::size_t i = 0; i < 4 * count; ++i) {
            row[1 + 4 * first + i] = static_cast<std::uint8_t>(random() % 4 * 50);
            sum[i % 4] = static_cast<std::uint8_t>(sum[i % 4] + row[1 + 4 * first + i]);
        }
        // Now and then the row goes back to nothing.
        if (first + count < columns && random() % 2 == 0)
            for (std::size_t c = 0; c < 4; ++c)
                row[1 + 4 * (first + count) + c] = static_cast<std::uint8_t>(0 - sum[c]);
    }
    return band;
}

TEST(CroppedPng, LiveColumnsLeaveOutTransparentOnesOnly) {
    std::mt19937 random(34);
    int narrowBands = 0;
    for (int round = 0; round < 3000; ++round) {
        constexpr std::size_t columns = 90;
        const std::size_t rows = 1 + random() % 6;
        const std::vector<std::uint8_t> filtered = randomBand(columns, rows, random);
        std::vector<std::uint8_t> forWhole = filtered;
        const ByteRange all{0, filtered.size()};
        std::vector<std::uint8_t> whole(rows * columns * 4);
        expandBand({forWhole, 4 * columns}, whole.data(), 4 * columns);
        const SparseBand band{{filtered, {&all, 1}}, 4 * columns};
        const ColumnRange live = liveColumns(band);
        if (!live.isEmpty() && live.size() < columns) ++narrowBands;
        std::vector<std::uint8_t> part(rows * columns * 4);
        if (!live.isEmpty()) expandColumns(band, live, part.data() + 4 * live.first, 4 * columns);
        ASSERT_EQ(part, whole) << round;
    }
    EXPECT_GT(narrowBands, 500);
}

/// Whether a file shows the same with and without a look for margins that may be left out.
testing::AssertionResult showsTheSameBothWays(const QByteArray& file) {
    const model::PngBytes bytes = fixtures::pngBytes(file);
    const CroppedImage cropped = decodeCroppedPngOfAnySize(bytes);
    const RasterImage whole = decodePng(bytes);
    if (cropped.isNull() != whole.isNull())
        return testing::AssertionFailure() << (whole.isNull() ? "a picture" : "none");
    if (cropped.whole() != whole) return testing::AssertionFailure() << "another picture";
    return testing::AssertionSuccess();
}

/// Where a row's filter stands among filtered rows.
qsizetype filterPlace(int row) {
    return row * (qsizetype{4} * width + 1);
}

TEST(CroppedPng, ABandOfZerosThatRepeatsTheOneAboveShowsIt) {
    const int rows = rowsPerBand(width);
    QByteArray filtered(filterPlace(height), '\0');
    filtered.replace(filterPlace(rows - 1) + 1 + qsizetype{4} * 70, 4, "\x09\x08\x07\xff");
    filtered[filterPlace(rows)] = 2;
    const model::PngBytes file = fixtures::pngBytes(fixtures::bandedFile(width, height, filtered));
    const CroppedImage cropped = decodeCroppedPng(file);
    EXPECT_TRUE(cropped.whole() == decodePng(file));
    EXPECT_EQ(pixelAt(cropped.whole(), 70, rows), (Pixel{9, 8, 7, 255}));
}

TEST(CroppedPng, ABandOfZerosWithAFilterThatIsNoneIsRefused) {
    for (const int row : {rowsPerBand(width), 2 * rowsPerBand(width) - 1}) {
        QByteArray filtered(filterPlace(height), '\0');
        filtered[filterPlace(row)] = 9;
        const model::PngBytes file =
            fixtures::pngBytes(fixtures::bandedFile(width, height, filtered));
        EXPECT_TRUE(decodePng(file).isNull()) << row;
        EXPECT_TRUE(decodeCroppedPng(file).isNull()) << row;
    }
}

TEST(CroppedPng, ShowsWhatTheWholePictureShowsWhateverItsFilters) {
    std::mt19937 random(36);
    constexpr std::size_t columns = 16'384;
    constexpr std::size_t rows = 16;
    ASSERT_EQ(rowsPerBand(columns), static_cast<int>(rows));
    for (int round = 0; round < 40; ++round) {
        QByteArray filtered;
        for (std::size_t band = 0; band < 3; ++band) {
            std::vector<std::uint8_t> bytes = randomBand(columns, rows, random);
            if (random() % 3 == 0) std::ranges::fill(bytes, std::uint8_t{0});
            if (random() % 3 == 0)
                bytes[random() % rows * (4 * columns + 1)] =
                    static_cast<std::uint8_t>(random() % 6);
            filtered.append(reinterpret_cast<const char*>(bytes.data()),
                            static_cast<qsizetype>(bytes.size()));
        }
        EXPECT_TRUE(showsTheSameBothWays(fixtures::bandedFile(columns, 3 * rows, filtered)))
            << round;
    }
}

TEST(CroppedPng, IsWholeOfALargeForeignPicture) {
    constexpr int side = 2100;
    static_assert(std::size_t{4} * side * side >= leastCroppedBytes);
    for (const bool isInterlaced : {false, true}) {
        const QByteArray file = fixtures::libpngFile({0, 1, isInterlaced, true}, side, side, 37);
        const CroppedImage cropped = decodeCroppedPng(fixtures::pngBytes(file));
        EXPECT_TRUE(cropped.isWhole());
        EXPECT_TRUE(cropped.image ==
                    fixtures::premultipliedImage(side, side, fixtures::libpngPixels(file)));
    }
}

class DecodedCrop : public testing::Test {
protected:
    DecodedCrop() { clearDecodeCache(); }
    ~DecodedCrop() override {
        setDecodeCacheBudget(std::size_t{512} * 1024 * 1024);
        clearDecodeCache();
    }

    static std::size_t decodedFiles() { return codecCounts().decodedFiles; }

    std::mt19937 m_random{35};
};

TEST_F(DecodedCrop, IsRememberedForWhatItTakes) {
    const model::PngBytes bytes = encodePng(pictureWith({QRect(40, 50, 200, 90)}, m_random));
    const CroppedImage cropped = decodedCrop(bytes);
    EXPECT_LT(decodeCacheSize(), std::size_t{200} * 1024);
    EXPECT_TRUE(isRemembered(bytes));
    const std::size_t before = decodedFiles();
    EXPECT_TRUE(decodedCrop(bytes).image.sharesPixelsWith(cropped.image));
    EXPECT_EQ(decodedFiles(), before);
}

TEST_F(DecodedCrop, ComesWholeWhereThePictureIsWorkedOn) {
    const RasterImage image = pictureWith({QRect(40, 50, 200, 90)}, m_random);
    const model::PngBytes bytes = encodePng(image);
    decodedCrop(bytes);
    const std::size_t before = decodedFiles();
    const RasterImage whole = decodedImage(bytes);
    EXPECT_TRUE(whole == image);
    EXPECT_EQ(whole.logicalSize(), QSizeF(width, height));
    EXPECT_TRUE(decodedImage(bytes).sharesPixelsWith(whole));
    EXPECT_TRUE(decodedCrop(bytes).image.sharesPixelsWith(whole));
    EXPECT_EQ(decodedFiles(), before);
}

TEST_F(DecodedCrop, APassKeepsTheFirstOfManyForTheNextPass) {
    std::vector<model::PngBytes> all;
    for (int i = 0; i < 10; ++i) all.push_back(encodePng(randomImage(50, 50, m_random)));
    constexpr std::size_t pictureBytes = std::size_t{50} * 50 * 4;
    setDecodeCacheBudget(6 * pictureBytes);
    const auto decodedInAPass = [&] {
        const std::size_t before = decodedFiles();
        const DecodeCachePass pass;
        for (const model::PngBytes& bytes : all) decodedCrop(bytes);
        return decodedFiles() - before;
    };
    EXPECT_EQ(decodedInAPass(), 10U);
    EXPECT_EQ(decodedInAPass(), 4U);
    EXPECT_TRUE(isRemembered(all[0]));
    EXPECT_FALSE(isRemembered(all[9]));
    // Outside a pass the last one wins, as ever.
    decodedCrop(all[9]);
    EXPECT_TRUE(isRemembered(all[9]));
    EXPECT_LE(decodeCacheSize(), 6 * pictureBytes);
}

} // namespace
} // namespace quillabrae::raster
