// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BitRows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr std::size_t bitsPerWord = 64;
constexpr std::uint64_t allOnes = ~std::uint64_t{0};

/// The first bit from `from` on that is one in `row` with all its words exclusive-or `flip`, or
/// the end of the row.
std::size_t firstOne(std::span<const std::uint64_t> row, std::size_t from, std::uint64_t flip) {
    std::size_t word = from / bitsPerWord;
    if (word >= row.size()) return row.size() * bitsPerWord;
    std::uint64_t bits = (row[word] ^ flip) & (allOnes << (from % bitsPerWord));
    while (bits == 0) {
        if (++word == row.size()) return row.size() * bitsPerWord;
        bits = row[word] ^ flip;
    }
    return word * bitsPerWord + static_cast<std::size_t>(std::countr_zero(bits));
}

/// The first bit of the run of ones that reaches up to bit `at`, itself a one.
std::size_t runStart(std::span<const std::uint64_t> row, std::size_t at) {
    std::size_t word = at / bitsPerWord;
    std::uint64_t zeros = ~row[word] & (allOnes >> (bitsPerWord - 1 - at % bitsPerWord));
    while (zeros == 0) {
        if (word == 0) return 0;
        zeros = ~row[--word];
    }
    return word * bitsPerWord + static_cast<std::size_t>(std::bit_width(zeros));
}

/// The eight bits of each byte value as eight bytes.
constexpr std::array<std::uint64_t, 256> makeSpreadBits() {
    std::array<std::uint64_t, 256> table{};
    for (std::size_t value = 0; value < table.size(); ++value)
        for (std::size_t bit = 0; bit < 8; ++bit)
            if ((value >> bit & 1U) != 0) table[value] |= std::uint64_t{0xff} << (8 * bit);
    return table;
}

constexpr std::array<std::uint64_t, 256> spreadBits = makeSpreadBits();
static_assert(std::endian::native == std::endian::little);

} // namespace

BitRows::BitRows(int width, int height)
    : m_wordsPerRow((static_cast<std::size_t>(width) + bitsPerWord - 1) / bitsPerWord),
      m_words(m_wordsPerRow * static_cast<std::size_t>(height)) {}

std::span<std::uint64_t> BitRows::row(int y) {
    return std::span(m_words).subspan(static_cast<std::size_t>(y) * m_wordsPerRow, m_wordsPerRow);
}

std::span<const std::uint64_t> BitRows::row(int y) const {
    return std::span(m_words).subspan(static_cast<std::size_t>(y) * m_wordsPerRow, m_wordsPerRow);
}

BitRun runOfOnes(std::span<const std::uint64_t> row, int first, int end) {
    const std::size_t one = firstOne(row, static_cast<std::size_t>(first), 0);
    if (one >= static_cast<std::size_t>(end)) return {};
    return {static_cast<int>(runStart(row, one)), static_cast<int>(firstOne(row, one, allOnes))};
}

void moveRun(std::span<std::uint64_t> from, std::span<std::uint64_t> to, BitRun run) {
    auto bit = static_cast<std::size_t>(run.first);
    const auto end = static_cast<std::size_t>(run.end);
    while (bit < end) {
        const std::size_t word = bit / bitsPerWord;
        const std::size_t wordEnd = std::min((word + 1) * bitsPerWord, end);
        const std::uint64_t moved = (allOnes >> (bitsPerWord - (wordEnd - bit)))
                                    << (bit % bitsPerWord);
        from[word] &= ~moved;
        to[word] |= moved;
        bit = wordEnd;
    }
}

void cellsOfBits(std::span<const std::uint64_t> row, int first, std::span<std::uint8_t> cells) {
    std::size_t word = static_cast<std::size_t>(first) / bitsPerWord;
    const std::size_t shift = static_cast<std::size_t>(first) % bitsPerWord;
    for (std::size_t i = 0; i < cells.size(); i += bitsPerWord, ++word) {
        std::uint64_t bits = row[word] >> shift;
        if (shift != 0 && word + 1 < row.size()) bits |= row[word + 1] << (bitsPerWord - shift);
        std::array<std::uint64_t, 8> spread{};
        for (std::size_t byte = 0; byte < spread.size(); ++byte)
            spread[byte] = spreadBits[bits >> (8 * byte) & 0xffU];
        std::memcpy(cells.data() + i, spread.data(), std::min(bitsPerWord, cells.size() - i));
    }
}

} // namespace quillabrae::raster
