// SPDX-License-Identifier: GPL-3.0-or-later
// to[i] = from[index[i]]
#include "raster/GatherKernel.h"

#include "raster/KernelTargets.h"
#include "raster/PixelLanes.h"

#include <algorithm>

namespace quillabrae::raster {
namespace {

using lanes::Words;

[[gnu::always_inline]] inline Words loadPlaces(const std::int32_t* places) {
    Words words;
    std::memcpy(&words, places, sizeof words);
    return words;
}

/// Eight pixels from one stretch of a row, or from one twice as long.
template <bool isWithinEight>
[[gnu::always_inline]] inline void gatherEights(const std::uint8_t* from, std::uint8_t* to,
                                                const std::int32_t* first,
                                                const std::int32_t* place, std::size_t eights,
                                                const std::uint8_t* next) {
    for (std::size_t i = 0; i < eights; ++i) {
        const std::size_t offset = 4 * static_cast<std::size_t>(first[i]);
        if (next != nullptr) __builtin_prefetch(next + offset, 0, 2);
        const Words places = loadPlaces(place + lanes::count * i);
        const Words pixels = lanes::loadPixels(from + offset);
        if constexpr (isWithinEight)
            lanes::storePixels(to + 4 * lanes::count * i, lanes::picked(pixels, places));
        else
            lanes::storePixels(
                to + 4 * lanes::count * i,
                lanes::picked(pixels, lanes::loadPixels(from + offset + 4 * lanes::count), places));
    }
}

QUILLABRAE_WIDE_KERNEL
void gatherWithinEight(const std::uint8_t* from, std::uint8_t* to, const std::int32_t* first,
                       const std::int32_t* place, std::size_t eights, const std::uint8_t* next) {
    gatherEights<true>(from, to, first, place, eights, next);
}

QUILLABRAE_WIDE_KERNEL
void gatherWithinSixteen(const std::uint8_t* from, std::uint8_t* to, const std::int32_t* first,
                         const std::int32_t* place, std::size_t eights, const std::uint8_t* next) {
    gatherEights<false>(from, to, first, place, eights, next);
}

void gatherOneByOne(const std::uint8_t* from, std::uint8_t* to, const std::int32_t* index,
                    std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(to + 4 * i, from + 4 * static_cast<std::size_t>(index[i]), 4);
}

} // namespace

RowGather::RowGather(std::span<const std::int32_t> index, int sourceCount) : m_index(index) {
    const std::size_t eights = index.size() / lanes::count;
    int widest = 0;
    for (std::size_t i = 0; i < eights; ++i)
        widest = std::max(widest,
                          index[lanes::count * i + lanes::count - 1] - index[lanes::count * i] + 1);
    constexpr std::int32_t lineLength = 16;
    if (index.size() > 1) {
        const std::int32_t reach = std::max(index.back() - index.front(), 1);
        m_pixelsPerLine =
            std::max<std::size_t>(lineLength * index.size() / static_cast<std::size_t>(reach), 1);
    }
    constexpr int eight = lanes::count;
    m_isWithinEight = widest <= eight;
    const int stretch = m_isWithinEight ? eight : 2 * eight;
    if (widest > stretch || sourceCount < stretch) return;
    m_first.reserve(eights);
    m_place.reserve(lanes::count * eights);
    for (std::size_t i = 0; i < eights; ++i) {
        // The last stretches end with the row.
        m_first.push_back(std::min(index[lanes::count * i], sourceCount - stretch));
        for (std::size_t lane = 0; lane < lanes::count; ++lane)
            m_place.push_back(index[lanes::count * i + lane] - m_first.back());
    }
}

void RowGather::operator()(const std::uint8_t* from, std::uint8_t* to) const {
    gatherPart(from, to, 0, m_index.size(), nullptr);
}

void RowGather::gatherPart(const std::uint8_t* from, std::uint8_t* to, std::size_t first,
                           std::size_t end, const std::uint8_t* next) const {
    std::size_t single = first;
    if (!m_first.empty()) {
        const std::size_t begin = std::min(first / lanes::count, m_first.size());
        const std::size_t limit = std::min((end + lanes::count - 1) / lanes::count, m_first.size());
        const auto gatherEights = m_isWithinEight ? gatherWithinEight : gatherWithinSixteen;
        gatherEights(from, to + 4 * lanes::count * begin, m_first.data() + begin,
                     m_place.data() + lanes::count * begin, limit - begin, next);
        single = std::max(first, lanes::count * m_first.size());
    }
    while (single < end) {
        // As many as share a line, which is fetched for the next row.
        const std::size_t count = std::min(m_pixelsPerLine, end - single);
        if (next != nullptr)
            __builtin_prefetch(next + 4 * static_cast<std::size_t>(m_index[single]), 0, 2);
        gatherOneByOne(from, to + 4 * single, m_index.data() + single, count);
        single += count;
    }
}

} // namespace quillabrae::raster
