// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/SparseDeflate.h"

#include "raster/DeflateBlock.h"
#include "raster/DeflateFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace quillabrae::raster {
namespace {

/// Spreads the bits of a word, 2^64 over the golden ratio.
constexpr std::uint64_t hashFactor = 0x9e3779b97f4a7c15U;

constexpr std::size_t greatestLengthSymbol = literalSymbolCount - 1;

/// The most tokens of a block.
constexpr std::size_t tokensOfBlock = std::size_t{64} * 1024;

// A token is a number of bytes as they are, a number of repetitions of the last byte, or a
// reference (its length from bit 16 on, below it the distance less 1).
constexpr std::uint32_t repetitionToken = 0x40000000U;
constexpr std::uint32_t referenceToken = 0x80000000U;

/// How a length or a distance is told: a symbol for its class, and its place within it.
struct ValueCode {
    std::uint8_t symbol;
    std::uint8_t extraBits;
    std::uint16_t extra;
};

/// By length, with symbols from `firstLengthSymbol` on.
constexpr auto lengthCodes = [] {
    std::array<ValueCode, greatestReference + 1> codes{};
    for (std::size_t symbol = 0; symbol < lengthClasses.size(); ++symbol) {
        const auto [base, extraBits] = lengthClasses[symbol];
        for (std::size_t length = base; length <= greatestReference; ++length)
            codes[length] = {static_cast<std::uint8_t>(symbol), extraBits,
                             static_cast<std::uint16_t>(length - base)};
    }
    return codes;
}();

/// Without a look into a table: there are two classes of each width, but for the narrowest.
constexpr ValueCode distanceCode(std::size_t distanceLess1) {
    const auto value = static_cast<unsigned>(distanceLess1);
    const auto width = static_cast<unsigned>(std::bit_width(value));
    if (width <= 2) return {static_cast<std::uint8_t>(value), 0, 0};
    const unsigned extraBits = width - 2;
    const unsigned symbol = 2 * extraBits + (value >> extraBits);
    return {static_cast<std::uint8_t>(symbol), static_cast<std::uint8_t>(extraBits),
            static_cast<std::uint16_t>(value & ((1U << extraBits) - 1U))};
}

static_assert([] {
    for (std::size_t symbol = 0; symbol < distanceClasses.size(); ++symbol) {
        const auto [base, extraBits] = distanceClasses[symbol];
        const ValueCode first = distanceCode(base - 1U);
        const ValueCode last = distanceCode(base - 1U + (1U << extraBits) - 1U);
        if (first.symbol != symbol || first.extraBits != extraBits || first.extra != 0)
            return false;
        if (last.symbol != symbol || last.extra != (1U << extraBits) - 1U) return false;
    }
    return true;
}());

std::uint64_t load64(const std::uint8_t* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, 8);
    return word;
}

/// Of that many zeros, those that go out as bytes: the first, when none is there to be repeated,
/// and those that are too few for a reference.
std::size_t zerosByThemselves(std::size_t count, bool isAfterZero) {
    const std::size_t first = isAfterZero ? 0 : 1;
    const std::size_t rest = (count - first) % greatestReference;
    return rest < leastReference ? first + rest : first;
}

/// Tokens as they come, and how often each symbol does.
class TokenList {
public:
    TokenList(ByteSpan bytes, std::uint32_t* tokens) : m_bytes(bytes.data()), m_tokens(tokens) {}

    /// The next four bytes.
    void addFourBytes(std::uint32_t word) {
        for (std::size_t i = 0; i < 4; ++i, word >>= 8) ++m_byteCounts[i][word & 0xffU];
        m_pendingBytes += 4;
    }

    /// The next byte.
    void addByte(std::uint8_t byte) {
        ++m_byteCounts[0][byte];
        ++m_pendingBytes;
    }

    void addReference(std::size_t length, std::size_t distance) {
        endBytes();
        m_tokens[m_size++] = referenceToken | static_cast<std::uint32_t>(length << 16) |
                             static_cast<std::uint32_t>(distance - 1);
        ++m_literalCounts[firstLengthSymbol + lengthCodes[length].symbol];
        ++m_distanceCounts[distanceCode(distance - 1).symbol];
    }

    /// Zeros, the last byte being zero or not.
    void addZeros(std::size_t count, bool isAfterZero) {
        for (std::size_t i = zerosByThemselves(count, isAfterZero); i > 0; --i, --count) addByte(0);
        if (count == 0) return;
        endBytes();
        m_tokens[m_size++] = repetitionToken | static_cast<std::uint32_t>(count);
        const std::size_t whole = count / greatestReference;
        const std::size_t rest = count % greatestReference;
        m_literalCounts[greatestLengthSymbol] += static_cast<std::uint32_t>(whole);
        m_distanceCounts[0] += static_cast<std::uint32_t>(whole);
        if (rest == 0) return;
        ++m_literalCounts[firstLengthSymbol + lengthCodes[rest].symbol];
        ++m_distanceCounts[0];
    }

    /// Whether what one step may add fits.
    bool hasRoom() const { return m_size + 4 <= tokensOfBlock; }
    bool isEmpty() const { return m_size == 0 && m_pendingBytes == 0; }

    /// Puts out all there is as a block, and begins afresh.
    void putBlock(BitWriter& writer);

private:
    void endBytes() {
        if (m_pendingBytes != 0) m_tokens[m_size++] = std::exchange(m_pendingBytes, 0U);
    }
    void addByteCounts();

    const std::uint8_t* m_bytes;
    std::uint32_t* m_tokens;
    std::size_t m_size = 0;
    std::uint32_t m_pendingBytes = 0;
    /// Four tables, so that equal neighbours do not wait for one another's count.
    std::array<std::array<std::uint32_t, 256>, 4> m_byteCounts{};
    std::array<std::uint32_t, literalSymbolCount> m_literalCounts{};
    std::array<std::uint32_t, distanceSymbolCount> m_distanceCounts{};
};

/// Codes with what goes with them, ready to be put.
class TokenWriter {
public:
    TokenWriter(BitWriter& writer, const LiteralCodes& literals, const DistanceCodes& distances)
        : m_writer(writer), m_literals(literals), m_distances(distances) {
        for (std::size_t length = leastReference; length <= greatestReference; ++length) {
            const ValueCode part = lengthCodes[length];
            const PrefixCode code = literals.of[firstLengthSymbol + part.symbol];
            m_lengths[length] = {
                code.bits | (static_cast<std::uint32_t>(part.extra) << code.length),
                static_cast<std::uint32_t>(code.length + part.extraBits)};
        }
    }

    void putReference(std::size_t length, std::size_t distanceLess1) {
        const Bits bits = m_lengths[length];
        const ValueCode part = distanceCode(distanceLess1);
        const PrefixCode code = m_distances.of[part.symbol];
        const std::uint64_t distance =
            code.bits | (static_cast<std::uint64_t>(part.extra) << code.length);
        m_writer.put(bits.bits | (distance << bits.count),
                     bits.count + code.length + part.extraBits);
    }

    void putRepetition(std::size_t count) {
        putWholeRepetitions(count / greatestReference);
        if (count % greatestReference != 0) putReference(count % greatestReference, 0);
    }

private:
    struct Bits {
        std::uint64_t bits = 0;
        std::uint32_t count = 0;
    };

    void putWholeRepetitions(std::size_t count) {
        const PrefixCode length = m_literals.of[greatestLengthSymbol];
        const PrefixCode distance = m_distances.of[0];
        const Bits one{length.bits | (static_cast<std::uint64_t>(distance.bits) << length.length),
                       static_cast<std::uint32_t>(length.length + distance.length)};
        // As many at a time as can be.
        const std::size_t together = BitWriter::greatestCount / std::max(one.count, 1U);
        if (count >= together) {
            Bits many;
            for (std::size_t i = 0; i < together; ++i, many.count += one.count)
                many.bits |= one.bits << many.count;
            for (; count >= together; count -= together) m_writer.put(many.bits, many.count);
        }
        for (; count > 0; --count) m_writer.put(one.bits, one.count);
    }

    BitWriter& m_writer;
    const LiteralCodes& m_literals;
    const DistanceCodes& m_distances;
    std::array<Bits, greatestReference + 1> m_lengths{};
};

void TokenList::addByteCounts() {
    for (auto& counts : m_byteCounts) {
        for (std::size_t value = 0; value < counts.size(); ++value)
            m_literalCounts[value] += counts[value];
        counts = {};
    }
}

void TokenList::putBlock(BitWriter& writer) {
    endBytes();
    addByteCounts();
    m_literalCounts[endOfBlockSymbol] = 1;
    const LiteralCodes literals(m_literalCounts);
    const DistanceCodes distances(m_distanceCounts);
    putBlockHeader(writer, literals, distances);
    TokenWriter tokens(writer, literals, distances);
    for (const std::uint32_t token : std::span(m_tokens, m_size)) {
        if ((token & referenceToken) != 0) {
            const std::size_t length = (token >> 16) & 0x1ffU;
            tokens.putReference(length, token & 0x7fffU);
            m_bytes += length;
        } else if ((token & repetitionToken) != 0) {
            tokens.putRepetition(token & ~repetitionToken);
            m_bytes += token & ~repetitionToken;
        } else {
            putBytes(writer, literals, {m_bytes, token});
            m_bytes += token;
        }
    }
    putCode(writer, literals.of[endOfBlockSymbol]);
    m_size = 0;
    m_literalCounts = {};
    m_distanceCounts = {};
}

/// Walks the bytes from the first to the last.
class Walk {
public:
    explicit Walk(const SparseBytes& bytes)
        : m_bytes(bytes.bytes.data()), m_size(bytes.bytes.size()), m_live(bytes.live) {}

    bool isAtEnd() const { return m_at == m_size; }
    std::size_t at() const { return m_at; }

    bool hasWord() const { return m_at + 8 <= m_size; }
    /// The next eight bytes.
    std::uint64_t word() const { return load64(m_bytes + m_at); }
    std::uint64_t wordAt(std::size_t place) const { return load64(m_bytes + place); }
    std::uint8_t byte() const { return m_bytes[m_at]; }
    bool isAfterZero() const { return m_at != 0 && m_bytes[m_at - 1] == 0; }

    void advance(std::size_t count) { m_at += count; }

    /// How many bytes from here on are the same as from `place` on, an earlier one; the first eight
    /// are.
    std::size_t equalLength(std::size_t place) const {
        const std::size_t limit = std::min(greatestReference, m_size - m_at);
        std::size_t length = 8;
        for (; length + 8 <= limit; length += 8) {
            const std::uint64_t difference =
                load64(m_bytes + place + length) ^ load64(m_bytes + m_at + length);
            if (difference != 0)
                return length + static_cast<std::size_t>(std::countr_zero(difference)) / 8;
        }
        while (length < limit && m_bytes[place + length] == m_bytes[m_at + length]) ++length;
        return length;
    }

    /// Goes on to the next byte that is not zero, or to the end; how far that is.
    std::size_t skipZeros() {
        const std::size_t begin = m_at;
        for (; !m_live.empty(); m_live = m_live.subspan(1)) {
            m_at = std::max(m_at, m_live.front().begin);
            if (skipZerosBefore(m_live.front().end)) return m_at - begin;
        }
        m_at = m_size;
        return m_at - begin;
    }

private:
    /// Whether there is a byte before `end` that is not zero.
    bool skipZerosBefore(std::size_t end) {
        for (; m_at + 8 <= end; m_at += 8) {
            const std::uint64_t word = load64(m_bytes + m_at);
            if (word == 0) continue;
            m_at += static_cast<std::size_t>(std::countr_zero(word)) / 8;
            return true;
        }
        for (; m_at < end; ++m_at)
            if (m_bytes[m_at] != 0) return true;
        return false;
    }

    const std::uint8_t* m_bytes;
    std::size_t m_size;
    std::span<const ByteRange> m_live;
    std::size_t m_at = 0;
};

} // namespace

std::size_t SparseDeflater::deflate(const SparseBytes& bytes, std::span<std::uint8_t> out) {
    m_tokens.resize(tokensOfBlock);
    m_places.fill(0);
    BitWriter writer(out.data());
    TokenList tokens(bytes.bytes, m_tokens.data());
    Walk walk(bytes);
    while (walk.hasWord()) {
        if (!tokens.hasRoom()) tokens.putBlock(writer);
        const std::uint64_t word = walk.word();
        const auto four = static_cast<std::uint32_t>(word);
        if (four == 0) {
            const bool isAfterZero = walk.isAfterZero();
            tokens.addZeros(walk.skipZeros(), isAfterZero);
            continue;
        }
        const auto at = static_cast<std::uint32_t>(walk.at());
        const std::size_t place =
            std::exchange(m_places[word * hashFactor >> (64 - placeBits)], at);
        if (at - place <= greatestDistance && walk.wordAt(place) == word && place != at) {
            const std::size_t length = walk.equalLength(place);
            tokens.addReference(length, at - place);
            walk.advance(length);
        } else {
            tokens.addFourBytes(four);
            walk.advance(4);
        }
    }
    for (; !walk.isAtEnd(); walk.advance(1)) tokens.addByte(walk.byte());
    if (!tokens.isEmpty()) tokens.putBlock(writer);
    putByteBorder(writer);
    return writer.size();
}

} // namespace quillabrae::raster
