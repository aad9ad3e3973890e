// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Deflate.h"
#include "raster/SparseInflate.h"
#include "support/ZlibInflate.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <array>
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

/// Writes deflate's symbols one by one, with codes that hardly any compressor would choose: one of
/// each length up to the longest, of which there are two.
class LongCodeStream {
public:
    /// By the length of their codes, the least first.
    static constexpr std::array<unsigned, 16> literals{256, 0,   7,   9,   20,  21,  22,  23,
                                                       24,  262, 263, 264, 265, 285, 283, 284};
    static constexpr std::array<unsigned, 16> distances{17, 1, 2,  3,  4,  5,  6, 7,
                                                        8,  9, 10, 11, 16, 12, 0, 13};

    LongCodeStream() {
        put(0, 1);
        put(2, 2);
        put(286 - 257, 5);
        put(30 - 1, 5);
        put(19 - 4, 4);
        // Lengths 0 to 15 have codes of four bits; the three ways to repeat one come first.
        put(0, 9);
        for (int i = 0; i < 16; ++i) put(4, 3);
        for (unsigned symbol = 0; symbol < 286; ++symbol)
            putReversed(lengthOf(literals, symbol), 4);
        for (unsigned symbol = 0; symbol < 30; ++symbol)
            putReversed(lengthOf(distances, symbol), 4);
    }

    void putLiteral(unsigned symbol) { putCode(literals, symbol); }
    void putReference(unsigned lengthSymbol, unsigned lengthExtra, unsigned lengthBits,
                      unsigned distanceSymbol, unsigned distanceExtra) {
        putCode(literals, lengthSymbol);
        put(lengthExtra, lengthBits);
        putCode(distances, distanceSymbol);
        put(distanceExtra, distanceSymbol < 4 ? 0 : distanceSymbol / 2 - 1);
    }

    /// Ends the block, and brings it to a byte's border by an empty stored one.
    Bytes finished() {
        putLiteral(256);
        put(0, 3);
        m_count = (m_count + 7) / 8 * 8;
        m_bytes.resize(m_count / 8);
        m_bytes.insert(m_bytes.end(), {0x00, 0x00, 0xff, 0xff});
        return m_bytes;
    }

private:
    using Symbols = std::array<unsigned, 16>;

    static unsigned lengthOf(const Symbols& symbols, unsigned symbol) {
        const auto found = std::ranges::find(symbols, symbol);
        if (found == symbols.end()) return 0;
        return std::min(15U, static_cast<unsigned>(found - symbols.begin()) + 1);
    }

    /// Ones and a zero at last, but for the greater one of the longest codes.
    void putCode(const Symbols& symbols, unsigned symbol) {
        const unsigned length = lengthOf(symbols, symbol);
        const bool isGreater = length == 15 && symbol == std::max(symbols[14], symbols[15]);
        const unsigned ones = (1U << length) - 1;
        putReversed(isGreater ? ones : ones - 1, length);
    }

    void putReversed(unsigned bits, unsigned count) {
        while (count-- > 0) put(bits >> count & 1U, 1);
    }
    void put(unsigned bits, unsigned count) {
        for (unsigned i = 0; i < count; ++i, ++m_count) {
            if (m_count % 8 == 0) m_bytes.push_back(0);
            m_bytes.back() |= static_cast<std::uint8_t>((bits >> i & 1U) << m_count % 8);
        }
    }

    Bytes m_bytes;
    std::size_t m_count = 0;
};

TEST(SparseInflate, TellsReferencesApartThatDifferInTheirLastBits) {
    LongCodeStream stream;
    for (const unsigned byte : {7, 9, 0}) stream.putLiteral(byte);
    // 258 zeros in 35 bits, and then 258 bytes from 261 before, of which the first 32 are the same.
    stream.putReference(284, 31, 5, 0, 0);
    stream.putReference(284, 31, 5, 16, 4);
    const Bytes deflated = stream.finished();
    const std::optional<Bytes> bytes = tests::zlibInflated(deflated, 519);
    ASSERT_TRUE(bytes && bytes->size() == 519);
    EXPECT_EQ(bytes->at(261), 7);
    EXPECT_TRUE(comesBack(deflated, *bytes));
}

TEST(SparseInflate, ReadsLongCodesAsZlibDoes) {
    std::mt19937 random(45);
    for (int round = 0; round < 300; ++round) {
        LongCodeStream stream;
        for (int i = 0; i < 600; ++i) stream.putLiteral(i % 50 == 0 ? 7 : 0);
        for (int token = 0; token < 30; ++token) {
            const unsigned distance = LongCodeStream::distances[random() % 16];
            const bool isNear = random() % 3 != 0;
            const unsigned distanceSymbol = isNear ? 0 : distance;
            const unsigned extra =
                static_cast<unsigned>(random()) &
                (distanceSymbol < 4 ? 0U : (1U << (distanceSymbol / 2 - 1)) - 1U);
            const unsigned repeats = 1 + static_cast<unsigned>(random() % 4);
            const bool isLongest = random() % 4 == 0;
            for (unsigned i = 0; i < repeats; ++i)
                stream.putReference(isLongest ? 285 : 284, isLongest ? 0 : 31, isLongest ? 0 : 5,
                                    distanceSymbol, extra);
            if (random() % 4 == 0) stream.putLiteral(random() % 2 == 0 ? 0 : 9);
        }
        const Bytes deflated = stream.finished();
        const std::optional<Bytes> bytes = tests::zlibInflated(deflated, 65'536);
        ASSERT_TRUE(bytes) << round;
        ASSERT_TRUE(comesBack(deflated, *bytes)) << round;
    }
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
