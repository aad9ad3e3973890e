// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LiteralDeflate.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <iterator>
#include <vector>

namespace quillabrae::raster {
namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t symbolCount = 257;
/// Four codes and a rest of less than a byte fit into 64 bits.
constexpr unsigned greatestLength = 12;

using Lengths = std::array<std::uint8_t, symbolCount>;
using Codes = std::array<std::uint32_t, symbolCount>;

constexpr unsigned codeBits = 16;

std::uint32_t codeOf(std::uint32_t entry) {
    return entry & ((1U << codeBits) - 1U);
}
unsigned lengthOf(std::uint32_t entry) {
    return entry >> codeBits;
}

/// Bits go into bytes from the lowest up. Writes 8 bytes at a time, so ahead of what counts.
class BitWriter {
public:
    explicit BitWriter(std::uint8_t* out) : m_begin(out), m_out(out) {}

    void put(std::uint64_t bits, unsigned count) {
        m_bits |= bits << m_count;
        m_count += count;
        flush();
    }

    void putCode(std::uint32_t entry) { put(codeOf(entry), lengthOf(entry)); }

    void putFourCodes(const std::uint8_t* bytes, const Codes& codes) {
        for (int i = 0; i < 4; ++i) {
            const std::uint32_t entry = codes[bytes[i]];
            m_bits |= static_cast<std::uint64_t>(codeOf(entry)) << m_count;
            m_count += lengthOf(entry);
        }
        flush();
    }

    void alignToByte() {
        m_out += (m_count + 7) / 8;
        m_bits = 0;
        m_count = 0;
    }

    std::size_t size() const { return static_cast<std::size_t>(m_out - m_begin); }

private:
    void flush() {
        static_assert(std::endian::native == std::endian::little);
        std::memcpy(m_out, &m_bits, 8);
        m_out += m_count / 8;
        m_bits >>= m_count / 8 * 8;
        m_count %= 8;
    }

    std::uint8_t* m_begin;
    std::uint8_t* m_out;
    std::uint64_t m_bits = 0;
    unsigned m_count = 0;
};

/// The best prefix code with no length above the greatest, by package-merge: on each level the
/// leaves are merged with pairs from the level below; the cheapest 2n - 2 of the top level say how
/// often each leaf, and so each bit of its code, is paid for.
Lengths codeLengths(const std::array<std::uint32_t, symbolCount>& counts) {
    struct Item {
        std::uint64_t weight;
        bool isPair;
    };
    std::vector<std::size_t> symbols;
    for (std::size_t i = 0; i < symbolCount; ++i)
        if (counts[i] != 0) symbols.push_back(i);
    std::ranges::stable_sort(symbols, {}, [&](std::size_t symbol) { return counts[symbol]; });

    std::vector<Item> leaves;
    for (const std::size_t symbol : symbols) leaves.push_back({counts[symbol], false});
    std::array<std::vector<Item>, greatestLength> levels;
    levels[0] = leaves;
    for (std::size_t level = 1; level < greatestLength; ++level) {
        const std::vector<Item>& below = levels[level - 1];
        std::vector<Item> pairs;
        for (std::size_t i = 0; i + 1 < below.size(); i += 2)
            pairs.push_back({below[i].weight + below[i + 1].weight, true});
        std::ranges::merge(leaves, pairs, std::back_inserter(levels[level]), {}, &Item::weight,
                           &Item::weight);
    }

    Lengths lengths{};
    std::size_t taken = 2 * symbols.size() - 2;
    for (std::size_t level = greatestLength; level-- > 0;) {
        const auto pairs = static_cast<std::size_t>(std::count_if(
            levels[level].begin(), levels[level].begin() + static_cast<std::ptrdiff_t>(taken),
            [](const Item& item) { return item.isPair; }));
        for (std::size_t i = 0; i < taken - pairs; ++i) ++lengths[symbols[i]];
        taken = 2 * pairs;
    }
    return lengths;
}

std::uint32_t reversed(std::uint32_t code, unsigned length) {
    std::uint32_t result = 0;
    for (unsigned i = 0; i < length; ++i, code >>= 1) result = (result << 1) | (code & 1U);
    return result;
}

/// Codes of one length count up in the order of their symbols, after all shorter ones.
Codes canonicalCodes(const Lengths& lengths) {
    Codes codes{};
    std::uint32_t next = 0;
    for (unsigned length = 1; length <= greatestLength; ++length, next <<= 1)
        for (std::size_t symbol = 0; symbol < symbolCount; ++symbol)
            if (lengths[symbol] == length)
                codes[symbol] = reversed(next++, length) | (length << codeBits);
    return codes;
}

/// The block's header: the lengths of the literals' codes, each in four bits.
void putBlockHeader(BitWriter& writer, const Lengths& lengths) {
    constexpr unsigned dynamicBlock = 0b100;
    constexpr unsigned literalCodesBeyond257 = 0;
    // No distance is ever written, but some readers want a whole code: two of one bit.
    constexpr unsigned distanceCodesBeyond1 = 1;
    constexpr unsigned lengthCodesBeyond4 = 15;
    constexpr unsigned runCodes = 3;
    constexpr unsigned lengthCodes = 16;
    writer.put(dynamicBlock, 3);
    writer.put(literalCodesBeyond257, 5);
    writer.put(distanceCodesBeyond1, 5);
    writer.put(lengthCodesBeyond4, 4);
    for (unsigned i = 0; i < runCodes; ++i) writer.put(0, 3);
    for (unsigned i = 0; i < lengthCodes; ++i) writer.put(4, 3);
    for (const std::uint8_t length : lengths) writer.put(reversed(length, 4), 4);
    for (int i = 0; i < 2; ++i) writer.put(reversed(1, 4), 4);
}

void putBlock(BitWriter& writer, ByteSpan bytes) {
    std::array<std::uint32_t, symbolCount> counts{};
    std::ranges::copy(countBytes(bytes), counts.begin());
    counts[endOfBlock] = 1;
    const Lengths lengths = codeLengths(counts);
    const Codes codes = canonicalCodes(lengths);
    putBlockHeader(writer, lengths);
    std::size_t i = 0;
    for (; i + 4 <= bytes.size(); i += 4) writer.putFourCodes(bytes.data() + i, codes);
    for (; i < bytes.size(); ++i) writer.putCode(codes[bytes[i]]);
    writer.putCode(codes[endOfBlock]);
}

} // namespace

ByteCounts countBytes(ByteSpan bytes) {
    // Four tables, so that equal neighbours do not wait for one another's count.
    std::array<ByteCounts, 4> counts{};
    std::size_t i = 0;
    for (; i + 4 <= bytes.size(); i += 4)
        for (std::size_t j = 0; j < 4; ++j) ++counts[j][bytes[i + j]];
    for (; i < bytes.size(); ++i) ++counts[0][bytes[i]];
    for (std::size_t value = 0; value < 256; ++value)
        counts[0][value] += counts[1][value] + counts[2][value] + counts[3][value];
    return counts[0];
}

std::size_t literalSize(const ByteCounts& counts) {
    double total = 0;
    for (const std::uint32_t count : counts) total += count;
    double bits = 0;
    for (const std::uint32_t count : counts)
        if (count != 0) bits += count * std::max(std::log2(total / count), 1.0);
    return static_cast<std::size_t>(bits / 8);
}

std::size_t deflateLiterals(ByteSpan bytes, std::span<std::uint8_t> out) {
    BitWriter writer(out.data());
    for (std::size_t at = 0; at < bytes.size(); at += blockSize)
        putBlock(writer, bytes.subspan(at, std::min(blockSize, bytes.size() - at)));
    // An empty stored block brings the stream to a byte's border.
    writer.put(0, 3);
    writer.alignToByte();
    writer.put(0xffff0000U, 32);
    return writer.size();
}

} // namespace quillabrae::raster
