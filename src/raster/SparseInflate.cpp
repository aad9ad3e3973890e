// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/SparseInflate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <optional>

namespace quillabrae::raster {
namespace {

constexpr unsigned greatestCodeLength = 15;
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t greatestReference = 258;
constexpr std::size_t literalSymbolCount = 288;
constexpr std::size_t distanceSymbolCount = 32;
/// Of the literal symbols, those that mean anything.
constexpr std::size_t usedLiteralCount = 286;

/// The bits of deflate, each byte's lowest first.
class BitReader {
public:
    explicit BitReader(ByteSpan bytes) : m_next(bytes.data()), m_end(bytes.data() + bytes.size()) {}

    /// Makes at least 56 bits ready, or all that are left.
    void refill() {
        if (m_end - m_next >= 8) {
            std::uint64_t word;
            std::memcpy(&word, m_next, 8);
            m_bits |= word << m_count;
            m_next += (63 - m_count) >> 3;
            m_count |= 56;
            return;
        }
        for (; m_count <= 56 && m_next != m_end; m_count += 8)
            m_bits |= static_cast<std::uint64_t>(*m_next++) << m_count;
    }

    /// The next ready bits; zeros beyond the last one.
    std::uint64_t peek(unsigned count) const { return m_bits & ((std::uint64_t{1} << count) - 1); }
    void skip(unsigned count) {
        m_bits >>= count;
        m_count -= static_cast<int>(count);
    }
    /// At most 32.
    std::uint32_t take(unsigned count) {
        const auto bits = static_cast<std::uint32_t>(peek(count));
        skip(count);
        return bits;
    }

    /// How many bits are ready.
    unsigned readyCount() const { return static_cast<unsigned>(m_count); }

    /// Takes `bits`, that many, as often as they come one after another; how often that is.
    std::size_t takeRepeats(std::uint64_t bits, unsigned count) {
        for (unsigned width = count; width < 64; width *= 2) bits |= bits << width;
        for (std::size_t repeats = 0;;) {
            refill();
            const unsigned ready = std::min(readyCount(), 56U);
            const unsigned equal =
                std::min(static_cast<unsigned>(std::countr_zero(m_bits ^ bits)), ready) / count;
            skip(equal * count);
            repeats += equal;
            if (equal == 0 || equal < ready / count) return repeats;
        }
    }

    /// Whether more was taken than there is.
    bool isOverdrawn() const { return m_count < 0; }
    bool isAtEnd() const { return m_count == 0 && m_next == m_end; }

    /// Goes on to a byte boundary and takes whole bytes; nothing when there are not as many.
    void alignToByte() { skip(static_cast<unsigned>(m_count) % 8); }
    std::optional<ByteSpan> takeBytes(std::size_t count) {
        // Back to the bytes that are ready.
        m_next -= m_count / 8;
        m_bits = 0;
        m_count = 0;
        if (static_cast<std::size_t>(m_end - m_next) < count) return std::nullopt;
        const ByteSpan bytes(m_next, count);
        m_next += count;
        return bytes;
    }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
    std::uint64_t m_bits = 0;
    int m_count = 0;
};

/// A prefix code: short codes are looked up, longer ones counted out.
class PrefixDecoder {
public:
    /// False when there are more codes than fit their lengths, or fewer, but for a single one.
    bool build(std::span<const std::uint8_t> lengths) {
        m_counts = {};
        for (const std::uint8_t length : lengths) ++m_counts[length];
        m_counts[0] = 0;
        std::array<std::uint16_t, greatestCodeLength + 2> offsets{};
        int left = 1;
        unsigned greatest = 0;
        for (unsigned length = 1; length <= greatestCodeLength; ++length) {
            left = 2 * left - m_counts[length];
            if (left < 0) return false;
            if (m_counts[length] != 0) greatest = length;
            offsets[length + 1] = static_cast<std::uint16_t>(offsets[length] + m_counts[length]);
        }
        if (left > 0 && greatest > 1) return false;
        for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
            if (lengths[symbol] != 0)
                m_symbols[offsets[lengths[symbol]]++] = static_cast<std::uint16_t>(symbol);
        }
        fillTable();
        return true;
    }

    /// The next symbol, or -1. At least 15 bits are ready, or all that are left.
    int decode(BitReader& reader) const {
        const std::uint16_t entry = m_table[reader.peek(tableBits)];
        if (entry == 0) return decodeLong(reader);
        reader.skip(entry & 15U);
        return entry >> 4;
    }

private:
    static constexpr unsigned tableBits = 10;

    void fillTable() {
        m_table.fill(0);
        std::uint32_t code = 0;
        std::size_t next = 0;
        for (unsigned length = 1; length <= tableBits; ++length, code <<= 1) {
            for (int i = 0; i < m_counts[length]; ++i, ++code, ++next) {
                std::uint32_t reversed = 0;
                for (unsigned bit = 0; bit < length; ++bit)
                    reversed |= (code >> bit & 1U) << (length - 1 - bit);
                const auto entry = static_cast<std::uint16_t>(m_symbols[next] << 4 | length);
                for (; reversed < m_table.size(); reversed += 1U << length)
                    m_table[reversed] = entry;
            }
        }
    }

    int decodeLong(BitReader& reader) const {
        const auto bits = static_cast<std::uint32_t>(reader.peek(greatestCodeLength));
        int code = 0;
        int first = 0;
        int index = 0;
        for (unsigned length = 1; length <= greatestCodeLength; ++length) {
            code |= static_cast<int>(bits >> (length - 1) & 1U);
            const int count = m_counts[length];
            if (code - first < count) {
                reader.skip(length);
                return m_symbols[static_cast<std::size_t>(index + code - first)];
            }
            index += count;
            first = (first + count) << 1;
            code <<= 1;
        }
        return -1;
    }

    std::array<std::uint16_t, greatestCodeLength + 1> m_counts{};
    std::array<std::uint16_t, literalSymbolCount> m_symbols{};
    /// By the next bits: the symbol, and the length of its code in the lowest four.
    std::array<std::uint16_t, std::size_t{1} << tableBits> m_table{};
};

/// What a symbol begins with and how many bits say the rest.
struct ValueClass {
    std::uint16_t base;
    std::uint8_t extraBits;
};

/// Classes double in width after each `1 << fineBits` of them.
template <std::size_t count>
constexpr std::array<ValueClass, count> valueClasses(unsigned least, unsigned fineBits) {
    std::array<ValueClass, count> classes{};
    unsigned base = least;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned step = static_cast<unsigned>(i) >> fineBits;
        const unsigned extraBits = step > 1 ? step - 1 : 0;
        classes[i] = {static_cast<std::uint16_t>(base), static_cast<std::uint8_t>(extraBits)};
        base += 1U << extraBits;
    }
    return classes;
}

constexpr auto lengthClasses = [] {
    auto classes = valueClasses<29>(3, 2);
    // The greatest has a class of its own.
    classes.back() = {greatestReference, 0};
    return classes;
}();
constexpr auto distanceClasses = valueClasses<30>(1, 1);

/// Writes what is not zero, and where.
class SparseWriter {
public:
    SparseWriter(std::span<std::uint8_t> out, std::vector<ByteRange>& live)
        : m_out(out), m_live(live) {}

    std::size_t at() const { return m_at; }
    std::size_t room() const { return m_out.size() - m_at; }

    // What is written is live before, so that it is known should there be no memory to say so.

    void putByte(std::uint8_t byte) {
        if (byte != 0) {
            addLive(1);
            m_out[m_at] = byte;
        }
        ++m_at;
    }
    void putBytes(ByteSpan bytes) {
        if (bytes.empty()) return;
        addLive(bytes.size());
        std::memcpy(m_out.data() + m_at, bytes.data(), bytes.size());
        m_at += bytes.size();
    }
    /// Whether what is at that distance, at most `at()`, and goes on from there is zero.
    bool isRunOfZeros(std::size_t distance) const { return distance == 1 && m_out[m_at - 1] == 0; }
    void skipZeros(std::size_t count) { m_at += count; }

    /// `distance` is at most `at()`.
    void repeat(std::size_t distance, std::size_t length) {
        if (!isRunOfZeros(distance)) {
            addLive(length);
            std::uint8_t* const to = m_out.data() + m_at;
            for (std::size_t i = 0; i < length; ++i) to[i] = *(to + i - distance);
        }
        m_at += length;
    }

private:
    void addLive(std::size_t count) {
        // Near ones are one: a range costs as much as some zeros.
        constexpr std::size_t nearness = 64;
        if (!m_live.empty() && m_at - m_live.back().end <= nearness)
            m_live.back().end = m_at + count;
        else
            m_live.push_back({m_at, m_at + count});
    }

    std::span<std::uint8_t> m_out;
    std::vector<ByteRange>& m_live;
    std::size_t m_at = 0;
};

class Inflater {
public:
    Inflater(ByteSpan deflated, std::span<std::uint8_t> out, std::vector<ByteRange>& live)
        : m_reader(deflated), m_writer(out, live) {}

    bool inflate() {
        while (!m_reader.isAtEnd()) {
            m_reader.refill();
            const bool isFinal = m_reader.take(1) != 0;
            const std::uint32_t kind = m_reader.take(2);
            if (isFinal || m_reader.isOverdrawn()) return false;
            const bool isGood = kind == 0   ? copyStored()
                                : kind == 1 ? useFixedCodes() && inflateBlock()
                                : kind == 2 ? readCodes() && inflateBlock()
                                            : false;
            if (!isGood) return false;
        }
        return m_writer.room() == 0;
    }

private:
    bool copyStored() {
        m_reader.alignToByte();
        m_reader.refill();
        const std::uint32_t size = m_reader.take(16);
        const std::uint32_t complement = m_reader.take(16);
        if (m_reader.isOverdrawn() || (size ^ complement) != 0xffffU || size > m_writer.room())
            return false;
        const std::optional<ByteSpan> bytes = m_reader.takeBytes(size);
        if (bytes) m_writer.putBytes(*bytes);
        return bytes.has_value();
    }

    bool useFixedCodes() {
        std::array<std::uint8_t, literalSymbolCount> literals{};
        for (std::size_t i = 0; i < literals.size(); ++i)
            literals[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        std::array<std::uint8_t, distanceSymbolCount> distances{};
        distances.fill(5);
        return m_literals.build(literals) && m_distances.build(distances);
    }

    bool readCodes() {
        m_reader.refill();
        const std::size_t literalCount = 257 + m_reader.take(5);
        const std::size_t distanceCount = 1 + m_reader.take(5);
        const std::size_t lengthCount = 4 + m_reader.take(4);
        constexpr std::array<std::uint8_t, 19> order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                     11, 4,  12, 3, 13, 2, 14, 1, 15};
        std::array<std::uint8_t, 19> lengthLengths{};
        for (std::size_t i = 0; i < lengthCount; ++i) {
            m_reader.refill();
            lengthLengths[order[i]] = static_cast<std::uint8_t>(m_reader.take(3));
        }
        // The code of lengths is done with before the one of literals begins.
        if (m_reader.isOverdrawn() || !m_literals.build(lengthLengths)) return false;
        std::array<std::uint8_t, literalSymbolCount + 2 * distanceSymbolCount> lengths{};
        if (literalCount > usedLiteralCount || distanceCount > distanceClasses.size() ||
            !readLengths({lengths.data(), literalCount + distanceCount}))
            return false;
        const std::span<const std::uint8_t> all(lengths);
        return lengths[endOfBlock] != 0 && m_literals.build(all.first(literalCount)) &&
               m_distances.build(all.subspan(literalCount, distanceCount));
    }

    bool readLengths(std::span<std::uint8_t> lengths) {
        std::size_t at = 0;
        while (at < lengths.size()) {
            m_reader.refill();
            const int symbol = m_literals.decode(m_reader);
            if (symbol < 0 || symbol > 18) return false;
            if (symbol < 16) {
                lengths[at++] = static_cast<std::uint8_t>(symbol);
                continue;
            }
            if (symbol == 16 && at == 0) return false;
            const std::uint8_t repeated = symbol == 16 ? lengths[at - 1] : std::uint8_t{0};
            const std::size_t count = symbol == 16   ? 3 + m_reader.take(2)
                                      : symbol == 17 ? 3 + m_reader.take(3)
                                                     : 11 + m_reader.take(7);
            if (m_reader.isOverdrawn() || count > lengths.size() - at) return false;
            std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(at), count, repeated);
            at += count;
        }
        return !m_reader.isOverdrawn();
    }

    bool inflateBlock() {
        for (;;) {
            m_reader.refill();
            const BitReader before = m_reader;
            const int symbol = m_literals.decode(m_reader);
            if (symbol < 0 || m_reader.isOverdrawn()) return false;
            if (symbol < static_cast<int>(endOfBlock)) {
                if (m_writer.room() == 0) return false;
                m_writer.putByte(static_cast<std::uint8_t>(symbol));
            } else if (symbol == static_cast<int>(endOfBlock)) {
                return true;
            } else if (!inflateReference(static_cast<std::size_t>(symbol) - endOfBlock - 1,
                                         before)) {
                return false;
            }
        }
    }

    /// `before`: where its bits begin.
    bool inflateReference(std::size_t lengthSymbol, const BitReader& before) {
        if (lengthSymbol >= lengthClasses.size()) return false;
        const ValueClass lengthClass = lengthClasses[lengthSymbol];
        const std::size_t length = lengthClass.base + m_reader.take(lengthClass.extraBits);
        const int distanceSymbol = m_distances.decode(m_reader);
        if (distanceSymbol < 0 ||
            static_cast<std::size_t>(distanceSymbol) >= distanceClasses.size())
            return false;
        const ValueClass distanceClass = distanceClasses[static_cast<std::size_t>(distanceSymbol)];
        const std::size_t distance = distanceClass.base + m_reader.take(distanceClass.extraBits);
        if (m_reader.isOverdrawn() || distance > m_writer.at() || length > m_writer.room())
            return false;
        const bool isZeros = m_writer.isRunOfZeros(distance);
        m_writer.repeat(distance, length);
        return !isZeros || length != greatestReference ||
               skipSameReferences(before, before.readyCount() - m_reader.readyCount());
    }

    /// The references that repeat the latest one, of zeros, which took `bitCount` bits: a large run
    /// of zeros has one for each 258 of them.
    bool skipSameReferences(const BitReader& before, unsigned bitCount) {
        const std::size_t count = m_reader.takeRepeats(before.peek(bitCount), bitCount);
        if (count > m_writer.room() / greatestReference) return false;
        m_writer.skipZeros(count * greatestReference);
        return true;
    }

    BitReader m_reader;
    SparseWriter m_writer;
    PrefixDecoder m_literals;
    PrefixDecoder m_distances;
};

} // namespace

bool inflateSparse(ByteSpan deflated, std::span<std::uint8_t> out, std::vector<ByteRange>& live) {
    live.clear();
    return Inflater(deflated, out, live).inflate();
}

} // namespace quillabrae::raster
