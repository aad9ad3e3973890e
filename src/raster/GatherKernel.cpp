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

QUILLABRAE_WIDE_KERNEL
void gatherWithinEight(const std::uint8_t* from, std::uint8_t* to, const std::int32_t* first,
                       const std::int32_t* place, std::size_t eights) {
    for (std::size_t i = 0; i < eights; ++i) {
        const std::uint8_t* const stretch = from + 4 * static_cast<std::size_t>(first[i]);
        lanes::storePixels(
            to + 4 * lanes::count * i,
            lanes::picked(lanes::loadPixels(stretch), loadPlaces(place + lanes::count * i)));
    }
}

QUILLABRAE_WIDE_KERNEL
void gatherWithinSixteen(const std::uint8_t* from, std::uint8_t* to, const std::int32_t* first,
                         const std::int32_t* place, std::size_t eights) {
    for (std::size_t i = 0; i < eights; ++i) {
        const std::uint8_t* const stretch = from + 4 * static_cast<std::size_t>(first[i]);
        lanes::storePixels(
            to + 4 * lanes::count * i,
            lanes::picked(lanes::loadPixels(stretch), lanes::loadPixels(stretch + 4 * lanes::count),
                          loadPlaces(place + lanes::count * i)));
    }
}

} // namespace

RowGather::RowGather(std::span<const std::int32_t> index, int sourceCount) : m_index(index) {
    const std::size_t eights = index.size() / lanes::count;
    int widest = 0;
    for (std::size_t i = 0; i < eights; ++i)
        widest = std::max(widest,
                          index[lanes::count * i + lanes::count - 1] - index[lanes::count * i] + 1);
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
    const std::size_t eights = m_first.size();
    if (m_isWithinEight)
        gatherWithinEight(from, to, m_first.data(), m_place.data(), eights);
    else
        gatherWithinSixteen(from, to, m_first.data(), m_place.data(), eights);
    for (std::size_t i = lanes::count * eights; i < m_index.size(); ++i)
        std::memcpy(to + 4 * i, from + 4 * static_cast<std::size_t>(m_index[i]), 4);
}

} // namespace quillabrae::raster
