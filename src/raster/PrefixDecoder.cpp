// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PrefixDecoder.h"

namespace quillabrae::raster {

bool PrefixDecoder::build(std::span<const std::uint8_t> lengths) {
    m_counts = {};
    for (const std::uint8_t length : lengths) ++m_counts[length];
    m_counts[0] = 0;
    std::array<std::uint16_t, greatestPrefixLength + 2> offsets{};
    int left = 1;
    unsigned greatest = 0;
    for (unsigned length = 1; length <= greatestPrefixLength; ++length) {
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

void PrefixDecoder::fillTable() {
    m_table.fill(0);
    std::uint32_t code = 0;
    std::size_t next = 0;
    for (unsigned length = 1; length <= tableBits; ++length, code <<= 1) {
        for (int i = 0; i < m_counts[length]; ++i, ++code, ++next) {
            std::uint32_t reversed = 0;
            for (unsigned bit = 0; bit < length; ++bit)
                reversed |= (code >> bit & 1U) << (length - 1 - bit);
            const auto entry = static_cast<std::uint16_t>(m_symbols[next] << 4 | length);
            for (; reversed < m_table.size(); reversed += 1U << length) m_table[reversed] = entry;
        }
    }
}

int PrefixDecoder::decodeLong(BitReader& reader) const {
    const auto bits = static_cast<std::uint32_t>(reader.peek(greatestPrefixLength));
    int code = 0;
    int first = 0;
    int index = 0;
    for (unsigned length = 1; length <= greatestPrefixLength; ++length) {
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

} // namespace quillabrae::raster
