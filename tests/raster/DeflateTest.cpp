// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Deflate.h"
#include "raster/DeflateBlock.h"
#include "raster/LiteralDeflate.h"
#include "raster/SparseDeflate.h"
#include "support/ZlibInflate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace quillabrae::raster {
namespace {

using tests::zlibInflated;
using Bytes = std::vector<std::uint8_t>;

Bytes deflatedBy(BandDeflater& deflater, const Bytes& bytes) {
    Bytes out(deflatedSizeBound(bytes.size()));
    const ByteRange all{0, bytes.size()};
    out.resize(
        deflater.deflate({.bytes = bytes, .live = std::span(&all, bytes.empty() ? 0 : 1)}, out));
    return out;
}

Bytes literallyDeflated(const Bytes& bytes) {
    Bytes out(deflatedSizeBound(bytes.size()));
    out.resize(deflateLiterals(bytes, out));
    return out;
}

Bytes noise(std::size_t size, double spread, unsigned seed) {
    std::minstd_rand random(seed);
    std::normal_distribution<double> normal(0, spread);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(static_cast<int>(std::lround(normal(random))));
    return bytes;
}

/// Mostly zero with short repeated words, like a screenshot's differences.
Bytes sparseWords(std::size_t size, unsigned seed) {
    std::minstd_rand random(seed);
    Bytes bytes(size, 0);
    for (std::size_t at = 0; at + 40 < size; at += 20 + random() % 900)
        for (std::size_t i = 0; i < 3 + random() % 30; ++i)
            bytes[at + i] = static_cast<std::uint8_t>((at / 4096 + i * 17) % 23);
    return bytes;
}

TEST(LiteralDeflate, ZlibReadsTheSameBytes) {
    for (const std::size_t size : {1U, 2U, 3U, 100U, 65'536U, 262'144U, 262'145U, 700'001U})
        for (const double spread : {0.0, 0.3, 2.0, 9.0, 1000.0}) {
            const Bytes bytes = noise(size, spread, static_cast<unsigned>(size));
            EXPECT_EQ(zlibInflated(literallyDeflated(bytes), size), bytes)
                << size << " bytes, spread " << spread;
        }
}

TEST(LiteralDeflate, CodesOfVeryUnequalCountsStayWithinTheLimit) {
    // Fibonacci counts give the deepest tree.
    Bytes bytes;
    std::size_t count = 1;
    std::size_t before = 1;
    for (std::uint8_t value = 0; value < 26; ++value) {
        bytes.insert(bytes.end(), count, value);
        count += std::exchange(before, count);
    }
    std::ranges::shuffle(bytes, std::minstd_rand(1));
    EXPECT_EQ(zlibInflated(literallyDeflated(bytes), bytes.size()), bytes);
}

TEST(LiteralDeflate, TheEstimateIsNearTheTruth) {
    for (const double spread : {1.0, 4.0, 30.0}) {
        const Bytes bytes = noise(200'000, spread, 5);
        const auto estimate = static_cast<double>(literalSize(countBytes(bytes)));
        EXPECT_NEAR(static_cast<double>(literallyDeflated(bytes).size()) / estimate, 1.0, 0.07);
    }
}

/// Live ranges that hold every byte that is not zero, blocks of that size.
std::vector<ByteRange> liveBlocks(const Bytes& bytes, std::size_t blockSize) {
    std::vector<ByteRange> live;
    for (std::size_t begin = 0; begin < bytes.size(); begin += blockSize) {
        const std::size_t end = std::min(begin + blockSize, bytes.size());
        const ByteSpan block = ByteSpan(bytes).subspan(begin, end - begin);
        if (std::ranges::all_of(block, [](std::uint8_t byte) { return byte == 0; })) continue;
        if (!live.empty() && live.back().end == begin)
            live.back().end = end;
        else
            live.push_back({begin, end});
    }
    return live;
}

Bytes sparselyDeflated(SparseDeflater& deflater, const Bytes& bytes, std::size_t blockSize) {
    const std::vector<ByteRange> live = liveBlocks(bytes, blockSize);
    Bytes out(deflatedSizeBound(bytes.size()));
    out.resize(deflater.deflate({.bytes = bytes, .live = live}, out));
    return out;
}

TEST(PrefixCodes, FillTheCodeSpaceAndStayWithinTheLimit) {
    std::minstd_rand random(11);
    for (int round = 0; round < 200; ++round) {
        std::array<std::uint32_t, literalSymbolCount> counts{};
        const auto used = random() % 287;
        const auto steepness = random() % 22;
        for (std::size_t i = 0; i < used; ++i)
            counts[random() % counts.size()] = 1U << random() % (steepness + 1);
        const LiteralCodes codes(counts);
        double taken = 0;
        for (std::size_t symbol = 0; symbol < counts.size(); ++symbol) {
            const unsigned length = codes.of[symbol].length;
            EXPECT_LE(length, greatestCodeLength);
            EXPECT_FALSE(counts[symbol] != 0 && length == 0) << symbol;
            if (length != 0) taken += std::ldexp(1.0, -static_cast<int>(length));
        }
        EXPECT_EQ(taken, 1.0) << "round " << round;
    }
}

TEST(PrefixCodes, OftenerSymbolsHaveNoLongerCodes) {
    std::array<std::uint32_t, distanceSymbolCount> counts{};
    std::uint32_t count = 1;
    for (std::uint32_t& entry : counts) entry = std::exchange(count, count + count / 2 + 1);
    const DistanceCodes codes(counts);
    for (std::size_t symbol = 1; symbol < counts.size(); ++symbol)
        EXPECT_LE(codes.of[symbol].length, codes.of[symbol - 1].length);
    EXPECT_EQ(codes.of.back().length, 2);
}

TEST(SparseDeflate, ZlibReadsTheSameBytes) {
    SparseDeflater deflater;
    for (const std::size_t size : {0U, 1U, 2U, 7U, 8U, 9U, 4096U, 300'001U})
        for (const std::size_t blockSize : {1U, 5U, 256U})
            for (unsigned seed = 1; seed < 4; ++seed) {
                Bytes bytes = sparseWords(size, seed);
                if (size != 0) bytes[size * seed / 4] = 200;
                EXPECT_EQ(zlibInflated(sparselyDeflated(deflater, bytes, blockSize), size), bytes)
                    << size << " bytes in blocks of " << blockSize;
            }
}

TEST(SparseDeflate, RunsOfEveryLengthAnywhereSurvive) {
    SparseDeflater deflater;
    for (const std::size_t lead : {0U, 1U, 3U}) {
        Bytes bytes(lead, 9);
        for (std::size_t run = 1; run < 800; ++run) {
            bytes.insert(bytes.end(), run, 0);
            bytes.insert(bytes.end(), 1 + run % 5, static_cast<std::uint8_t>(run));
        }
        EXPECT_EQ(zlibInflated(sparselyDeflated(deflater, bytes, 16), bytes.size()), bytes);
    }
}

TEST(SparseDeflate, NothingButZerosIsNextToNothing) {
    SparseDeflater deflater;
    for (const std::size_t size : {1U, 3U, 4U, 258U, 259U, 260U, 261U, 262U, 1'000'000U}) {
        const Bytes bytes(size, 0);
        const Bytes deflated = sparselyDeflated(deflater, bytes, 256);
        EXPECT_EQ(zlibInflated(deflated, size), bytes) << size;
        EXPECT_LT(deflated.size(), 40 + size / 1000);
    }
}

TEST(SparseDeflate, ManyTokensMakeSeveralBlocks) {
    // Half noise and half nothing, in pieces: some 200,000 tokens.
    const Bytes grain = noise(1'000'000, 40.0, 12);
    Bytes bytes;
    for (std::size_t at = 0; at + 10 <= grain.size(); at += 10) {
        bytes.insert(bytes.end(), grain.begin() + static_cast<std::ptrdiff_t>(at),
                     grain.begin() + static_cast<std::ptrdiff_t>(at + 10));
        bytes.insert(bytes.end(), 10, 0);
    }
    SparseDeflater deflater;
    const Bytes deflated = sparselyDeflated(deflater, bytes, 10);
    EXPECT_EQ(zlibInflated(deflated, bytes.size()), bytes);
    EXPECT_LT(deflated.size(), grain.size() * 115 / 100);
}

TEST(SparseDeflate, ReferencesReachBackAWindowAndNoFurther) {
    SparseDeflater deflater;
    const Bytes word = noise(40, 90.0, 13);
    for (const std::size_t distance : {40U, 1000U, 32'767U, 32'768U, 32'769U, 100'000U}) {
        Bytes bytes(2 * distance, 0);
        std::ranges::copy(word, bytes.begin());
        std::ranges::copy(word, bytes.begin() + static_cast<std::ptrdiff_t>(distance));
        EXPECT_EQ(zlibInflated(sparselyDeflated(deflater, bytes, 64), bytes.size()), bytes)
            << distance;
    }
}

TEST(SparseDeflate, TheResultDependsOnTheBytesAlone) {
    SparseDeflater used;
    for (int round = 0; round < 3; ++round)
        for (unsigned seed = 1; seed < 6; ++seed) {
            const Bytes bytes = sparseWords(200'000, seed);
            SparseDeflater fresh;
            EXPECT_EQ(sparselyDeflated(used, bytes, 256), sparselyDeflated(fresh, bytes, 1));
        }
}

TEST(BandDeflater, TheResultDependsOnTheBytesAlone) {
    std::vector<Bytes> bands;
    for (unsigned seed = 1; seed < 6; ++seed) {
        bands.push_back(sparseWords(300'000, seed));
        bands.push_back(noise(300'000, 3.0, seed));
    }
    std::vector<Bytes> expected;
    for (const Bytes& band : bands) {
        BandDeflater fresh;
        expected.push_back(deflatedBy(fresh, band));
        EXPECT_EQ(zlibInflated(expected.back(), band.size()), band);
    }
    BandDeflater used;
    std::minstd_rand random(3);
    for (int round = 0; round < 60; ++round) {
        const std::size_t band = random() % bands.size();
        EXPECT_EQ(deflatedBy(used, bands[band]), expected[band]) << "round " << round;
    }
}

TEST(BandDeflater, NeverNeedsMoreRoomThanAnnounced) {
    BandDeflater deflater;
    for (const std::size_t size : {0U, 1U, 20U, 70'000U, 400'000U}) {
        const Bytes bytes = noise(size, 5000.0, 7);
        EXPECT_EQ(zlibInflated(deflatedBy(deflater, bytes), size), bytes);
    }
}

TEST(BandDeflater, NoiseIsCodedByItselfAndRepetitionsByReference) {
    const Bytes bytes = noise(1'000'000, 3.0, 8);
    BandDeflater deflater;
    EXPECT_LT(deflatedBy(deflater, bytes).size(), bytes.size() * 47 / 100);
    Bytes repeated;
    for (int i = 0; i < 100; ++i) {
        const Bytes word = noise(5000, 3.0, 9);
        repeated.insert(repeated.end(), word.begin(), word.end());
    }
    EXPECT_LT(deflatedBy(deflater, repeated).size(), repeated.size() / 15);
}

TEST(BandInflater, AcceptsOnlyWholeBandsOfTheRightSize) {
    const Bytes bytes = sparseWords(100'000, 4);
    BandDeflater deflater;
    const Bytes deflated = deflatedBy(deflater, bytes);
    BandInflater inflater;
    Bytes out(bytes.size());
    EXPECT_TRUE(inflater.inflate(deflated, out));
    EXPECT_EQ(out, bytes);
    Bytes larger(bytes.size() + 1);
    EXPECT_FALSE(inflater.inflate(deflated, larger));
    Bytes smaller(bytes.size() - 1);
    EXPECT_FALSE(inflater.inflate(deflated, smaller));
    for (std::size_t cut = 1; cut < 12; ++cut)
        EXPECT_FALSE(inflater.inflate(ByteSpan(deflated).first(deflated.size() - cut), out)) << cut;
    Bytes longer = deflated;
    longer.push_back(0);
    EXPECT_FALSE(inflater.inflate(longer, out));
    Bytes ended = deflated;
    ended.push_back(3);
    ended.push_back(0);
    EXPECT_FALSE(inflater.inflate(ended, out));
}

} // namespace
} // namespace quillabrae::raster
