// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quillabrae::raster {

/// Puts bits into bytes from the lowest up, as deflate does. Writes 8 bytes at a time, so up to 8
/// ahead of what counts.
class BitWriter {
public:
    /// The most bits of one `put`.
    static constexpr unsigned greatestCount = 56;

    explicit BitWriter(std::uint8_t* out) : m_begin(out), m_out(out) {}

    /// The lowest `count` bits of `bits`; those above are zero.
    void put(std::uint64_t bits, unsigned count) {
        m_bits |= bits << m_count;
        m_count += count;
        static_assert(std::endian::native == std::endian::little);
        std::memcpy(m_out, &m_bits, 8);
        m_out += m_count / 8;
        m_bits >>= m_count / 8 * 8;
        m_count %= 8;
    }

    void alignToByte() {
        m_out += (m_count + 7) / 8;
        m_bits = 0;
        m_count = 0;
    }

    std::size_t size() const { return static_cast<std::size_t>(m_out - m_begin); }

private:
    std::uint8_t* m_begin;
    std::uint8_t* m_out;
    std::uint64_t m_bits = 0;
    unsigned m_count = 0;
};

} // namespace quillabrae::raster
