// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngChunks.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace quillabrae::raster {

/// Takes bits out of bytes, each byte's lowest first, as deflate has them. Bits beyond the last
/// byte are zero, and taking them is noticed afterwards.
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

} // namespace quillabrae::raster
