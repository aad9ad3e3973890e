// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BitRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

/// A row of bits, also kept one to an element.
class BitRow : public testing::TestWithParam<int> {
protected:
    int width() const { return GetParam(); }

    /// Ones in runs of a few to a few hundred bits.
    std::vector<bool> fill(std::span<std::uint64_t> row) {
        std::vector<bool> bits(static_cast<std::size_t>(width()));
        std::uniform_int_distribution<int> length(1, m_random() % 2 == 0 ? 4 : 300);
        bool value = m_random() % 2 == 0;
        for (std::size_t i = 0; i < bits.size(); value = !value)
            for (int left = length(m_random); left > 0 && i < bits.size(); --left, ++i)
                bits[i] = value;
        for (std::size_t i = 0; i < bits.size(); ++i)
            if (bits[i]) row[i / 64] |= std::uint64_t{1} << (i % 64);
        return bits;
    }

    std::mt19937 m_random{41};
};

std::vector<bool> bitsOf(std::span<const std::uint64_t> row, int width) {
    std::vector<bool> bits(static_cast<std::size_t>(width));
    for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = (row[i / 64] >> (i % 64) & 1U) != 0;
    return bits;
}

TEST_P(BitRow, FindsTheWholeRunAroundTheFirstOne) {
    for (int round = 0; round < 100; ++round) {
        BitRows rows(width(), 1);
        const std::vector<bool> bits = fill(rows.row(0));
        std::uniform_int_distribution<int> place(0, width());
        const int first = place(m_random);
        const int end = place(m_random);
        int start = first;
        while (start < end && !bits[static_cast<std::size_t>(start)]) ++start;
        const BitRun run = runOfOnes(rows.row(0), first, end);
        ASSERT_EQ(run.isEmpty(), start >= end);
        if (run.isEmpty()) continue;
        int stop = start;
        while (start > 0 && bits[static_cast<std::size_t>(start - 1)]) --start;
        while (stop < width() && bits[static_cast<std::size_t>(stop)]) ++stop;
        ASSERT_EQ(run.first, start);
        ASSERT_EQ(run.end, stop);
    }
}

TEST_P(BitRow, MovesARunAndNothingElse) {
    for (int round = 0; round < 100; ++round) {
        BitRows from(width(), 1);
        BitRows to(width(), 1);
        std::vector<bool> expected = fill(from.row(0));
        const BitRun run = runOfOnes(from.row(0), 0, width());
        if (run.isEmpty()) continue;
        std::vector<bool> moved(expected.size());
        for (int i = run.first; i < run.end; ++i) {
            expected[static_cast<std::size_t>(i)] = false;
            moved[static_cast<std::size_t>(i)] = true;
        }
        moveRun(from.row(0), to.row(0), run);
        ASSERT_EQ(bitsOf(from.row(0), width()), expected);
        ASSERT_EQ(bitsOf(to.row(0), width()), moved);
    }
}

TEST_P(BitRow, SpreadsBitsToBytesFromAnyPlace) {
    for (int round = 0; round < 100; ++round) {
        BitRows rows(width(), 1);
        const std::vector<bool> bits = fill(rows.row(0));
        std::uniform_int_distribution<int> place(0, width() - 1);
        const int first = place(m_random);
        std::vector<std::uint8_t> cells(
            static_cast<std::size_t>(place(m_random) % (width() - first)) + 1);
        cellsOfBits(rows.row(0), first, cells);
        for (std::size_t i = 0; i < cells.size(); ++i)
            ASSERT_EQ(cells[i], bits[static_cast<std::size_t>(first) + i] ? 255 : 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Widths, BitRow, testing::Values(1, 7, 63, 64, 65, 127, 128, 200, 1000));

TEST(BitRows, KeepsRowsApart) {
    BitRows rows(65, 3);
    std::ranges::fill(rows.row(1), ~std::uint64_t{0});
    for (const int y : {0, 2})
        for (const std::uint64_t word : rows.row(y)) EXPECT_EQ(word, 0U);
}

} // namespace
} // namespace quillabrae::raster
