// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DeflateBlock.h"

#include <algorithm>

namespace quillabrae::raster {
namespace {

constexpr unsigned greatestLengthCodeLength = 7;

constexpr std::size_t greatestSymbolCount = literalSymbolCount;

/// Symbols in the order of their counts, the rarest first, without those that never come.
class SortedCounts {
public:
    explicit SortedCounts(std::span<const std::uint32_t> counts) {
        for (std::size_t symbol = 0; symbol < counts.size(); ++symbol)
            if (counts[symbol] != 0) add(counts[symbol], symbol);
        for (std::size_t symbol = 0; m_size < 2; ++symbol)
            if (counts[symbol] == 0) add(1, symbol);
        std::sort(m_entries.begin(), m_entries.begin() + static_cast<std::ptrdiff_t>(m_size));
    }

    std::size_t size() const { return m_size; }
    std::uint64_t count(std::size_t i) const { return m_entries[i] >> symbolBits; }
    std::size_t symbol(std::size_t i) const { return m_entries[i] & ((1U << symbolBits) - 1U); }

private:
    static constexpr unsigned symbolBits = 9;
    void add(std::uint64_t count, std::size_t symbol) {
        m_entries[m_size++] = count << symbolBits | symbol;
    }

    std::array<std::uint64_t, greatestSymbolCount> m_entries{};
    std::size_t m_size = 0;
};

/// How many codes have which length, by Huffman's way: the two rarest are joined again and again.
/// Both the leaves and what was joined come in rising order, so the rarest is at one of two heads.
class LengthCounts {
public:
    LengthCounts(const SortedCounts& leaves, unsigned greatestLength) {
        countDepths(leaves, greatestLength);
        shorten(greatestLength);
    }

    std::uint32_t of(unsigned length) const { return m_counts[length]; }

private:
    void countDepths(const SortedCounts& leaves, unsigned greatestLength) {
        const std::size_t leafCount = leaves.size();
        const std::size_t nodeCount = 2 * leafCount - 1;
        std::array<std::uint64_t, greatestSymbolCount> joined{};
        std::array<std::uint16_t, 2 * greatestSymbolCount> parents{};
        std::size_t leaf = 0;
        std::size_t pair = 0;
        for (std::size_t node = leafCount; node < nodeCount; ++node) {
            const std::size_t made = node - leafCount;
            for (int i = 0; i < 2; ++i) {
                const bool isLeaf =
                    leaf < leafCount && (pair == made || leaves.count(leaf) <= joined[pair]);
                joined[made] += isLeaf ? leaves.count(leaf) : joined[pair];
                parents[isLeaf ? leaf++ : leafCount + pair++] = static_cast<std::uint16_t>(node);
            }
        }
        std::array<std::uint16_t, 2 * greatestSymbolCount> depths{};
        for (std::size_t node = nodeCount - 1; node-- > 0;) {
            depths[node] = static_cast<std::uint16_t>(depths[parents[node]] + 1);
            if (node < leafCount) ++m_counts[std::min<std::size_t>(depths[node], greatestLength)];
        }
    }

    /// Where codes were too long and now take more of the code space than there is: a shorter one
    /// makes room for two of the next length, itself and one of the longest.
    void shorten(unsigned greatestLength) {
        std::uint32_t taken = 0;
        for (unsigned length = 1; length <= greatestLength; ++length)
            taken += m_counts[length] << (greatestLength - length);
        for (; taken > 1U << greatestLength; --taken) {
            unsigned length = greatestLength - 1;
            while (m_counts[length] == 0) --length;
            --m_counts[length];
            m_counts[length + 1] += 2;
            --m_counts[greatestLength];
        }
    }

    std::array<std::uint32_t, greatestCodeLength + 1> m_counts{};
};

void findCodeLengths(std::span<const std::uint32_t> counts, unsigned greatestLength,
                     std::span<PrefixCode> codes) {
    const SortedCounts leaves(counts);
    const LengthCounts lengths(leaves, greatestLength);
    std::size_t leaf = 0;
    for (unsigned length = greatestLength; length > 0; --length)
        for (std::uint32_t i = 0; i < lengths.of(length); ++i)
            codes[leaves.symbol(leaf++)].length = static_cast<std::uint16_t>(length);
}

std::uint16_t reversed(std::uint32_t code, unsigned length) {
    code = (code & 0x5555U) << 1 | (code >> 1 & 0x5555U);
    code = (code & 0x3333U) << 2 | (code >> 2 & 0x3333U);
    code = (code & 0x0f0fU) << 4 | (code >> 4 & 0x0f0fU);
    code = (code & 0x00ffU) << 8 | (code >> 8 & 0x00ffU);
    return static_cast<std::uint16_t>(code >> (16 - length));
}

/// Codes of one length count up in the order of their symbols, after all shorter ones.
void numberCodes(std::span<PrefixCode> codes) {
    std::array<std::uint32_t, greatestCodeLength + 1> counts{};
    for (const PrefixCode code : codes) ++counts[code.length];
    std::array<std::uint32_t, greatestCodeLength + 1> next{};
    for (unsigned length = 2; length <= greatestCodeLength; ++length)
        next[length] = (next[length - 1] + counts[length - 1]) << 1;
    for (PrefixCode& code : codes)
        if (code.length != 0) code.bits = reversed(next[code.length]++, code.length);
}

/// The codes' lengths as the header words them: a symbol of the third code, and what follows it.
class LengthWords {
public:
    struct Word {
        std::uint8_t symbol;
        std::uint8_t extraBits;
        std::uint8_t extra;
    };

    void add(std::uint8_t length, std::size_t repeats) {
        if (length == 0) {
            for (; repeats >= 11; repeats -= std::min<std::size_t>(repeats, 138))
                addWord(18, 7, std::min<std::size_t>(repeats, 138) - 11);
            if (repeats >= 3) {
                addWord(17, 3, repeats - 3);
                repeats = 0;
            }
        } else if (repeats > 3) {
            addWord(length, 0, 0);
            for (--repeats; repeats >= 3; repeats -= std::min<std::size_t>(repeats, 6))
                addWord(16, 2, std::min<std::size_t>(repeats, 6) - 3);
        }
        for (; repeats > 0; --repeats) addWord(length, 0, 0);
    }

    std::span<const Word> words() const { return std::span(m_words).first(m_size); }
    const std::array<std::uint32_t, lengthSymbolCount>& counts() const { return m_counts; }

private:
    void addWord(std::uint8_t symbol, std::uint8_t extraBits, std::size_t extra) {
        m_words[m_size++] = {symbol, extraBits, static_cast<std::uint8_t>(extra)};
        ++m_counts[symbol];
    }

    std::array<Word, literalSymbolCount + distanceSymbolCount> m_words{};
    std::size_t m_size = 0;
    std::array<std::uint32_t, lengthSymbolCount> m_counts{};
};

/// How many of the codes the header states: all up to the last that is in use.
std::size_t statedCount(std::span<const PrefixCode> codes, std::size_t least) {
    std::size_t count = codes.size();
    while (count > least && codes[count - 1].length == 0) --count;
    return count;
}

} // namespace

template <std::size_t Count>
PrefixCodes<Count>::PrefixCodes(const std::array<std::uint32_t, Count>& counts) {
    findCodeLengths(counts, greatestCodeLength, of);
    numberCodes(of);
}

template struct PrefixCodes<literalSymbolCount>;
template struct PrefixCodes<distanceSymbolCount>;

void putBlockHeader(BitWriter& writer, const LiteralCodes& literals,
                    const DistanceCodes& distances) {
    constexpr unsigned dynamicBlock = 0b100;
    const std::size_t literalCount = statedCount(literals.of, firstLengthSymbol);
    const std::size_t distanceCount = statedCount(distances.of, 1);
    std::array<std::uint8_t, literalSymbolCount + distanceSymbolCount> lengths{};
    const auto lengthOf = [](PrefixCode code) { return static_cast<std::uint8_t>(code.length); };
    const auto end =
        std::transform(distances.of.begin(), distances.of.begin() + distanceCount,
                       std::transform(literals.of.begin(), literals.of.begin() + literalCount,
                                      lengths.begin(), lengthOf),
                       lengthOf);
    LengthWords words;
    for (auto run = lengths.begin(); run != end;) {
        const auto runEnd =
            std::find_if(run, end, [&](std::uint8_t length) { return length != *run; });
        words.add(*run, static_cast<std::size_t>(runEnd - run));
        run = runEnd;
    }
    std::array<PrefixCode, lengthSymbolCount> codes{};
    findCodeLengths(words.counts(), greatestLengthCodeLength, codes);
    numberCodes(codes);
    std::size_t orderCount = lengthSymbolCount;
    while (orderCount > 4 && codes[lengthSymbolOrder[orderCount - 1]].length == 0) --orderCount;

    writer.put(dynamicBlock, 3);
    writer.put(literalCount - firstLengthSymbol, 5);
    writer.put(distanceCount - 1, 5);
    writer.put(orderCount - 4, 4);
    for (std::size_t i = 0; i < orderCount; ++i) writer.put(codes[lengthSymbolOrder[i]].length, 3);
    for (const LengthWords::Word& word : words.words()) {
        putCode(writer, codes[word.symbol]);
        writer.put(word.extra, word.extraBits);
    }
}

void putByteBorder(BitWriter& writer) {
    writer.put(0, 3);
    writer.alignToByte();
    writer.put(0xffff0000U, 32);
}

} // namespace quillabrae::raster
