// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/BitReader.h"
#include "raster/DeflateFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quillabrae::raster {

/// A prefix code: short codes are looked up, longer ones counted out.
class PrefixDecoder {
public:
    /// The code with these lengths, 0 for a symbol that never comes; at most
    /// `fixedLiteralSymbolCount` of them. False when there are more codes than fit their lengths,
    /// or fewer, but for a single one.
    bool build(std::span<const std::uint8_t> lengths);

    /// The next symbol, or -1. At least 15 bits are ready, or all that are left.
    int decode(BitReader& reader) const {
        const std::uint16_t entry = m_table[reader.peek(tableBits)];
        if (entry == 0) return decodeLong(reader);
        reader.skip(entry & 15U);
        return entry >> 4;
    }

private:
    static constexpr unsigned tableBits = 10;

    void fillTable();
    int decodeLong(BitReader& reader) const;

    std::array<std::uint16_t, greatestPrefixLength + 1> m_counts{};
    std::array<std::uint16_t, fixedLiteralSymbolCount> m_symbols{};
    /// By the next bits: the symbol, and the length of its code in the lowest four.
    std::array<std::uint16_t, std::size_t{1} << tableBits> m_table{};
};

} // namespace quillabrae::raster
