// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Deflate.h"
#include "raster/SparseInflate.h"
#include "support/ZlibInflate.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <optional>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Zeros with runs of noise, of few values and of repeated words among them.
Bytes sparseBytes(std::size_t size, std::mt19937& random) {
    Bytes bytes(size);
    std::size_t at = 0;
    while (at < size) {
        at += random() % 4 == 0 ? random() % 4 : random() % 5000;
        const std::size_t count = std::min(std::size_t{random() % 300}, size - std::min(at, size));
        const auto kind = random() % 3;
        for (std::size_t i = 0; i < count; ++i) {
            const auto byte = static_cast<std::uint8_t>(kind == 0   ? random()
                                                        : kind == 1 ? random() % 3
                                                                    : (at + i) % 7 * 30);
            bytes[at + i] = byte;
        }
        at += count;
    }
    return bytes;
}

Bytes deflatedByUs(const Bytes& bytes) {
    BandDeflater deflater;
    Bytes out(deflatedSizeBound(bytes.size()));
    const ByteRange all{0, bytes.size()};
    out.resize(deflater.deflate({.bytes = bytes, .live = {&all, bytes.empty() ? 0U : 1U}}, out));
    return out;
}

/// By zlib, without a last block.
Bytes deflatedByZlib(Bytes bytes, int level, int strategy) {
    z_stream stream{};
    deflateInit2(&stream, level, Z_DEFLATED, -15, 8, strategy);
    Bytes out(deflateBound(&stream, bytes.size()) + 64);
    stream.next_in = bytes.data();
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FULL_FLUSH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

/// Whether the bytes come back, and all that is not live is zero.
testing::AssertionResult comesBack(const Bytes& deflated, const Bytes& bytes) {
    Bytes out(bytes.size());
    std::vector<ByteRange> live;
    if (!inflateSparse(deflated, out, live)) return testing::AssertionFailure() << "not inflated";
    if (out != bytes) return testing::AssertionFailure() << "other bytes";
    std::size_t at = 0;
    for (const ByteRange& range : live) {
        if (range.begin < at || range.begin >= range.end || range.end > bytes.size())
            return testing::AssertionFailure() << "ranges out of order";
        if (std::any_of(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                        bytes.begin() + static_cast<std::ptrdiff_t>(range.begin),
                        [](std::uint8_t byte) { return byte != 0; }))
            return testing::AssertionFailure() << "a byte outside of the ranges";
        at = range.end;
    }
    if (std::any_of(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end(),
                    [](std::uint8_t byte) { return byte != 0; }))
        return testing::AssertionFailure() << "a byte behind the ranges";
    return testing::AssertionSuccess();
}

TEST(SparseInflate, GivesBackWhatWasDeflated) {
    std::mt19937 random(41);
    for (const std::size_t size : {1, 2, 3, 257, 259, 5000, 65'536, 300'000}) {
        for (int round = 0; round < 6; ++round) {
            const Bytes bytes = sparseBytes(size, random);
            EXPECT_TRUE(comesBack(deflatedByUs(bytes), bytes)) << size;
            for (const int level : {0, 1, 6}) {
                for (const int strategy : {Z_DEFAULT_STRATEGY, Z_FIXED, Z_HUFFMAN_ONLY, Z_RLE})
                    EXPECT_TRUE(comesBack(deflatedByZlib(bytes, level, strategy), bytes))
                        << size << ' ' << level << ' ' << strategy;
            }
        }
    }
}

TEST(SparseInflate, ReadsCodesOfEveryLength) {
    // How often bytes come falls off so fast that the rare ones have the longest codes.
    std::mt19937 random(42);
    Bytes bytes;
    for (unsigned value = 1; value < 40; ++value)
        bytes.insert(bytes.end(), std::size_t{1} << std::min(17U, value / 2),
                     static_cast<std::uint8_t>(value));
    std::ranges::shuffle(bytes, random);
    EXPECT_TRUE(comesBack(deflatedByZlib(bytes, 6, Z_HUFFMAN_ONLY), bytes));
    EXPECT_TRUE(comesBack(deflatedByUs(bytes), bytes));
}

TEST(SparseInflate, LeavesZerosUntouched) {
    const Bytes bytes(100'000);
    Bytes out(bytes.size());
    std::vector<ByteRange> live;
    ASSERT_TRUE(inflateSparse(deflatedByUs(bytes), out, live));
    EXPECT_TRUE(live.empty());
}

TEST(SparseInflate, RefusesWhatIsNotAsLongAsSaid) {
    std::mt19937 random(43);
    const Bytes bytes = sparseBytes(5000, random);
    const Bytes deflated = deflatedByUs(bytes);
    std::vector<ByteRange> live;
    for (const std::size_t size : {4999, 5001}) {
        Bytes out(size);
        EXPECT_FALSE(inflateSparse(deflated, out, live));
    }
    for (std::size_t cut = 0; cut < deflated.size() - 5; cut += 3) {
        Bytes out(bytes.size());
        EXPECT_FALSE(inflateSparse(std::span(deflated).first(cut), out, live)) << cut;
    }
}

TEST(SparseInflate, TakesNoDamagedBytesForGood) {
    std::mt19937 random(44);
    int goodOnes = 0;
    int damagedOnes = 0;
    for (int round = 0; round < 6'000; ++round) {
        const Bytes bytes = sparseBytes(1 + random() % 600, random);
        Bytes deflated = round % 2 == 0
                             ? deflatedByUs(bytes)
                             : deflatedByZlib(bytes, static_cast<int>(random() % 7), Z_RLE);
        for (auto change = random() % 3; change > 0; --change)
            deflated[random() % deflated.size()] ^= static_cast<std::uint8_t>(1U << random() % 8);
        Bytes out(bytes.size());
        std::vector<ByteRange> live;
        const bool isGood = inflateSparse(deflated, out, live);
        const std::optional<Bytes> expected = tests::zlibInflated(deflated, bytes.size());
        if (isGood) {
            ASSERT_EQ(out, expected) << round;
        } else {
            ASSERT_NE(expected, bytes) << round;
        }
        ++(isGood ? goodOnes : damagedOnes);
    }
    EXPECT_GT(goodOnes, 1500);
    EXPECT_GT(damagedOnes, 1500);
}

} // namespace
} // namespace quillabrae::raster
