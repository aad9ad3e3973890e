// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngBands.h"
#include "raster/PngCodec.h"
#include "raster/PngFixtures.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <zlib.h>

#include <chrono>
#include <cstring>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

QByteArray deflated(const QByteArray& bytes) {
    return qCompress(bytes, 9).sliced(4);
}

bool isRefused(const QByteArray& file) {
    return decodePng(pngBytes(file)).isNull();
}

/// The filtered rows of an image, every row with the filter Up, and where its bands begin.
QByteArray filteredRows(const RasterImage& image, bool isFirstRowOfBandSub) {
    const std::vector<std::uint8_t> straight = straightPixels(image);
    const int stride = 4 * image.width();
    const int rows = rowsPerBand(image.width());
    QByteArray filtered;
    for (int y = 0; y < image.height(); ++y) {
        const bool isSub = isFirstRowOfBandSub && y % rows == 0;
        filtered.append(isSub ? '\1' : '\2');
        for (int i = 0; i < stride; ++i) {
            const int at = y * stride + i;
            const auto sample = [&](int index) {
                return index < 0 ? 0 : straight[static_cast<std::size_t>(index)];
            };
            const int prediction = isSub ? (i < 4 ? 0 : sample(at - 4)) : sample(at - stride);
            filtered.append(static_cast<char>(sample(at) - prediction));
        }
    }
    return filtered;
}

enum class Cut { atBands, elsewhere };

/// A good PNG that carries a band index with right checksums, whose stream was made by one
/// compressor that was flushed in the given way after each band.
QByteArray claimedFile(const RasterImage& image, bool isFirstRowOfBandSub, int flush, Cut cut) {
    const QByteArray filtered = filteredRows(image, isFirstRowOfBandSub);
    const qsizetype bandSize =
        qsizetype{rowsPerBand(image.width())} * (qsizetype{4} * image.width() + 1);
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    std::vector<QByteArray> bands;
    std::vector<QByteArray> parts;
    for (qsizetype at = 0; at < filtered.size(); at += bandSize) {
        QByteArray& band =
            bands.emplace_back(filtered.sliced(at, std::min(bandSize, filtered.size() - at)));
        QByteArray out(2 * band.size() + 1000, '\0');
        stream.next_in = reinterpret_cast<Bytef*>(band.data());
        stream.avail_in = static_cast<uInt>(band.size());
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = static_cast<uInt>(out.size());
        deflate(&stream, flush);
        parts.push_back(out.first(out.size() - stream.avail_out));
    }
    deflateEnd(&stream);
    if (cut == Cut::elsewhere)
        for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
            parts[i + 1].prepend(parts[i].last(3));
            parts[i].chop(3);
        }
    return bandedFile(image.width(), image.height(), bands, parts);
}

/// Sets every chunk's CRC right, so that damage reaches what lies behind the CRC check.
void repairChecksums(QByteArray& file) {
    for (qsizetype at = 8; at + 12 <= file.size();) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(file.constData()) + at;
        const qsizetype length = readBigEndian32(bytes);
        if (length > file.size() - at - 12) return;
        const QByteArray repaired =
            chunk(file.sliced(at + 4, 4).constData(), file.sliced(at + 8, length));
        file.replace(at, repaired.size(), repaired);
        at += repaired.size();
    }
}

TEST(HostilePng, EveryTornFileIsRefused) {
    for (const QByteArray& file :
         {encodePng(randomImage(9, 5, 1)).toByteArray(), libpngFile({3, 4, true, true}, 9, 5, 1),
          libpngFile({2, 8}, 9, 5, 1)}) {
        ASSERT_FALSE(isRefused(file));
        for (qsizetype size = 0; size < file.size(); ++size)
            EXPECT_TRUE(isRefused(file.first(size)));
    }
}

TEST(HostilePng, EveryFlippedBitIsNoticed) {
    for (const QByteArray& file :
         {encodePng(randomImage(9, 5, 1)).toByteArray(), libpngFile({3, 4, true, true}, 9, 5, 1),
          libpngFile({2, 8}, 9, 5, 1)})
        for (qsizetype bit = 0; bit < 8 * file.size(); ++bit) {
            QByteArray flipped = file;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
            EXPECT_TRUE(isRefused(flipped)) << "bit " << bit;
        }
}

TEST(HostilePng, SizesBeyondTheLimitsAreRefusedBeforeAnythingIsAllocated) {
    const QByteArray data = chunk("IDAT", deflated(QByteArray(2'000'000, '\0')));
    struct rusage before {};
    getrusage(RUSAGE_SELF, &before);
    const auto start = std::chrono::steady_clock::now();
    for (const auto& [width, height] : {std::pair(32'769U, 1U),
                                        {1U, 32'769U},
                                        {20'000U, 20'000U},
                                        {0x7fffffffU, 0x7fffffffU},
                                        {0xffffffffU, 1U},
                                        {0U, 1U},
                                        {1U, 0U}})
        for (const int interlacing : {0, 1})
            EXPECT_TRUE(isRefused(signature + header(width, height, 8, 6, interlacing) + data +
                                  chunk("IEND", {})));
    struct rusage after {};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 16'384);
}

TEST(HostilePng, AHeaderThatPromisesMoreThanItsDataCanHoldIsRefused) {
    const QByteArray data = chunk("IDAT", deflated(QByteArray(100'000, '\0')));
    struct rusage before {};
    getrusage(RUSAGE_SELF, &before);
    for (const int interlacing : {0, 1})
        EXPECT_TRUE(isRefused(signature + header(17'000, 17'000, 8, 6, interlacing) + data +
                              chunk("IEND", {})));
    struct rusage after {};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 16'384);
}

TEST(HostilePng, DataThatInflatesToMoreThanTheImageIsRefusedInBoundedMemory) {
    const QByteArray bomb = chunk("IDAT", deflated(QByteArray(200'000'000, '\0')));
    struct rusage before {};
    getrusage(RUSAGE_SELF, &before);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(isRefused(signature + header(8, 8) + bomb + chunk("IEND", {})));
    struct rusage after {};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 16'384);
}

TEST(HostilePng, ATextThatInflatesWithoutEndCostsNothing) {
    const QByteArray good = libpngFile({6, 8, true}, 20, 20, 3);
    const QByteArray text =
        chunk("zTXt", QByteArray("Comment\0\0", 9) + deflated(QByteArray(200'000'000, 'x')));
    const auto start = std::chrono::steady_clock::now();
    const RasterImage image = decodePng(pngBytes(good.first(33) + text + good.sliced(33)));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_TRUE(image == decodePng(pngBytes(good)));
}

TEST(HostilePng, BandsThatLeanOnOneAnotherDecodeLikeAnyOtherFile) {
    const RasterImage image = randomImage(2048, 200, 4);
    for (const bool isFirstRowOfBandSub : {true, false})
        for (const int flush : {Z_FULL_FLUSH, Z_SYNC_FLUSH})
            for (const Cut cut : {Cut::atBands, Cut::elsewhere}) {
                const QByteArray file = claimedFile(image, isFirstRowOfBandSub, flush, cut);
                ASSERT_EQ(libpngPixels(file), straightPixels(image));
                EXPECT_TRUE(decodePng(pngBytes(file)) == image);
            }
}

TEST(HostilePng, AWrongBandIndexChangesNothing) {
    const RasterImage image = randomImage(300, 900, 5);
    const QByteArray file = encodePng(image).toByteArray();
    const qsizetype place = file.indexOf("qbND");
    ASSERT_GT(place, 0);
    const qsizetype length =
        readBigEndian32(reinterpret_cast<const std::uint8_t*>(file.constData()) + place - 4);
    for (qsizetype i = 0; i < length; ++i) {
        QByteArray wrong = file;
        wrong[place + 4 + i] = static_cast<char>(wrong[place + 4 + i] + 1);
        repairChecksums(wrong);
        EXPECT_TRUE(decodePng(pngBytes(wrong)) == image) << "byte " << i;
    }
}

TEST(HostilePng, ABandThatEndsTheStreamEarlyIsNotBelieved) {
    const RasterImage image = randomImage(2048, 1000, 6);
    const model::PngBytes ours = encodePng(image);
    const std::optional<PngLayout> layout = readPngLayout(ours.bytes());
    ASSERT_TRUE(layout && readBandIndex(*layout));
    const qsizetype bandSize =
        qsizetype{rowsPerBand(image.width())} * (qsizetype{4} * image.width() + 1);
    const QByteArray filtered = filteredRows(image, true).first(bandSize);
    for (const bool isLastBlockFinal : {false, true}) {
        // The first band once more, in stored blocks.
        QByteArray stored;
        for (qsizetype at = 0; at < bandSize; at += 50'000) {
            const QByteArray part = filtered.sliced(at, std::min<qsizetype>(50'000, bandSize - at));
            const bool isFinal = isLastBlockFinal && at + 50'000 >= bandSize;
            const auto length = static_cast<unsigned>(part.size());
            for (const unsigned byte : {isFinal ? 1U : 0U, length & 0xffU, length >> 8,
                                        ~length & 0xffU, (~length >> 8) & 0xffU})
                stored.append(static_cast<char>(byte));
            stored += part;
        }
        QByteArray file = ours.toByteArray();
        const ByteSpan band = layout->imageData[1].whole;
        file.replace(band.data() - ours.bytes().data(), static_cast<qsizetype>(band.size()),
                     chunk("IDAT", stored));
        EXPECT_EQ(decodePng(pngBytes(file)).isNull(), isLastBlockFinal);
        EXPECT_EQ(libpngPixels(file).empty(), isLastBlockFinal);
    }
}

TEST(HostilePng, DamageBehindTheChecksumsNeverGivesOtherPixelsThanLibpng) {
    std::minstd_rand random(7);
    std::vector<QByteArray> seeds = {
        encodePng(randomImage(30, 30, 8)).toByteArray(),
        claimedFile(randomImage(2048, 70, 9), true, Z_FULL_FLUSH, Cut::atBands)};
    for (const auto& [type, depth] : {std::pair(0, 1), {0, 16}, {2, 8}, {3, 2}, {4, 8}, {6, 16}})
        for (const bool isInterlaced : {false, true})
            seeds.push_back(libpngFile({type, depth, isInterlaced, true}, 21, 13, 10));
    int decodedFiles = 0;
    for (int round = 0; round < 2000; ++round) {
        QByteArray file = seeds[random() % seeds.size()];
        for (unsigned hits = 1 + static_cast<unsigned>(random() % 3); hits > 0; --hits)
            file[static_cast<qsizetype>(random() % static_cast<unsigned>(file.size()))] =
                static_cast<char>(random() >> 6);
        repairChecksums(file);
        const std::optional<QSize> size = pngPixelSize(pngBytes(file));
        if (size && isDecodableSize(size->width(), size->height()) &&
            qint64{size->width()} * size->height() > 4'000'000)
            continue;
        const RasterImage decoded = decodePng(pngBytes(file));
        if (decoded.isNull()) continue;
        const std::vector<std::uint8_t> expected = libpngPixels(file);
        if (expected.empty()) continue;
        ++decodedFiles;
        ASSERT_TRUE(decoded == premultipliedImage(decoded.width(), decoded.height(), expected))
            << "round " << round;
    }
    EXPECT_GT(decodedFiles, 20);
}

TEST(HostilePng, ChunksOutOfPlaceAreRefused) {
    const QByteArray data = deflated(QByteArray(5, '\0'));
    const QByteArray head = signature + header(1, 1);
    const QByteArray end = chunk("IEND", {});
    EXPECT_FALSE(isRefused(head + chunk("IDAT", data) + end));
    EXPECT_FALSE(isRefused(head + chunk("IDAT", data) + end + "and more"));
    EXPECT_FALSE(isRefused(head + chunk("IDAT", data.first(3)) + chunk("IDAT", {}) +
                           chunk("IDAT", data.sliced(3)) + end));
    EXPECT_TRUE(isRefused(head + end));
    EXPECT_TRUE(isRefused(head + chunk("IDAT", {}) + end));
    EXPECT_TRUE(isRefused(head + chunk("IDAT", data)));
    EXPECT_TRUE(isRefused(head + header(1, 1) + chunk("IDAT", data) + end));
    EXPECT_TRUE(isRefused(head + chunk("NEED", "x") + chunk("IDAT", data) + end));
    EXPECT_TRUE(isRefused(head + chunk("IDAT", data.first(3)) + chunk("teXt", "x") +
                          chunk("IDAT", data.sliced(3)) + end));
    EXPECT_TRUE(isRefused(head + chunk("IDAT", data) + chunk("PLTE", "abc") + end));
    EXPECT_TRUE(isRefused(signature + chunk("IDAT", data) + end));
    EXPECT_TRUE(isRefused(signature + header(1, 1, 8, 3) + chunk("IDAT", data) + end));
    EXPECT_TRUE(isRefused(signature + header(1, 1, 3, 0) + chunk("IDAT", data) + end));
    EXPECT_TRUE(isRefused(signature + header(1, 1, 8, 5) + chunk("IDAT", data) + end));
    EXPECT_TRUE(isRefused(signature + header(1, 1, 8, 6, 2) + chunk("IDAT", data) + end));
}

TEST(HostilePng, AFilterThatIsNoneIsRefused) {
    const QByteArray data = chunk("IDAT", deflated(QByteArray("\5\0\0\0\0", 5)));
    EXPECT_TRUE(isRefused(signature + header(1, 1) + data + chunk("IEND", {})));
}

} // namespace
} // namespace quillabrae::raster
