// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/SparseInflate.h"

#include "raster/BitReader.h"
#include "raster/DeflateFormat.h"
#include "raster/PrefixDecoder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>

namespace quillabrae::raster {
namespace {

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
        std::array<std::uint8_t, fixedLiteralSymbolCount> literals{};
        for (std::size_t i = 0; i < literals.size(); ++i)
            literals[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        std::array<std::uint8_t, fixedDistanceSymbolCount> distances{};
        distances.fill(5);
        return m_literals.build(literals) && m_distances.build(distances);
    }

    bool readCodes() {
        m_reader.refill();
        const std::size_t literalCount = 257 + m_reader.take(5);
        const std::size_t distanceCount = 1 + m_reader.take(5);
        const std::size_t lengthCount = 4 + m_reader.take(4);
        std::array<std::uint8_t, lengthSymbolCount> lengthLengths{};
        for (std::size_t i = 0; i < lengthCount; ++i) {
            m_reader.refill();
            lengthLengths[lengthSymbolOrder[i]] = static_cast<std::uint8_t>(m_reader.take(3));
        }
        // The code of lengths is done with before the one of literals begins.
        if (m_reader.isOverdrawn() || !m_literals.build(lengthLengths)) return false;
        std::array<std::uint8_t, literalSymbolCount + distanceSymbolCount> lengths{};
        if (literalCount > literalSymbolCount || distanceCount > distanceSymbolCount ||
            !readLengths({lengths.data(), literalCount + distanceCount}))
            return false;
        const std::span<const std::uint8_t> all(lengths);
        return lengths[endOfBlockSymbol] != 0 && m_literals.build(all.first(literalCount)) &&
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
            if (symbol < static_cast<int>(endOfBlockSymbol)) {
                if (m_writer.room() == 0) return false;
                m_writer.putByte(static_cast<std::uint8_t>(symbol));
            } else if (symbol == static_cast<int>(endOfBlockSymbol)) {
                return true;
            } else if (!inflateReference(static_cast<std::size_t>(symbol) - firstLengthSymbol,
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
