// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/PictureCoverage.h"

#include "raster/AlphaKernels.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>

namespace quillabrae::canvas {
namespace {

bool isAllOpaque(const std::uint8_t* pixels, int count) {
    std::uint32_t everyBit = 0xff000000U;
    for (int i = 0; i < count; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, pixels + 4 * i, 4);
        everyBit &= pixel;
    }
    return everyBit == 0xff000000U;
}

PictureCoverage::Tile examined(const raster::RasterImage& picture, int column, int row) {
    using Tile = PictureCoverage::Tile;
    const int left = column * PictureCoverage::tileSide;
    const int top = row * PictureCoverage::tileSide;
    const int width = std::min(PictureCoverage::tileSide, picture.width() - left);
    const int bottom = std::min(top + PictureCoverage::tileSide, picture.height());
    const std::uint8_t firstAlpha = picture.row(top)[4 * left + 3];
    if (firstAlpha != 0 && firstAlpha != 255) return Tile::mixed;
    for (int y = top; y < bottom; ++y) {
        const std::uint8_t* pixels = picture.row(y) + 4 * left;
        const bool isAlike = firstAlpha == 0
                                 ? raster::isAllZero(pixels, 4 * static_cast<std::size_t>(width))
                                 : isAllOpaque(pixels, width);
        if (!isAlike) return Tile::mixed;
    }
    return firstAlpha == 0 ? Tile::empty : Tile::opaque;
}

} // namespace

PictureCoverage::PictureCoverage(int width, int height)
    : m_columns((width + tileSide - 1) / tileSide),
      m_tiles(static_cast<std::size_t>(m_columns * ((height + tileSide - 1) / tileSide))) {}

PictureCoverage::Tile PictureCoverage::tile(const raster::RasterImage& picture, int column,
                                            int row) {
    // Two threads may examine the same tile: they find the same.
    const std::atomic_ref<std::uint8_t> known(
        m_tiles[static_cast<std::size_t>(row * m_columns + column)]);
    Tile tile = static_cast<Tile>(known.load(std::memory_order_relaxed));
    if (tile != Tile::unknown) return tile;
    tile = examined(picture, column, row);
    known.store(static_cast<std::uint8_t>(tile), std::memory_order_relaxed);
    return tile;
}

std::shared_ptr<PictureCoverage> CoverageCache::coverageOf(const model::PngBytes& bytes,
                                                           const raster::RasterImage& picture) {
    std::erase_if(m_entries, [](const Entry& entry) { return entry.first.expired(); });
    const auto found = std::ranges::find_if(
        m_entries, [&](const Entry& entry) { return entry.first.lock() == bytes.buffer(); });
    if (found != m_entries.end()) return found->second;
    auto coverage = std::make_shared<PictureCoverage>(picture.width(), picture.height());
    m_entries.emplace_back(bytes.buffer(), coverage);
    return coverage;
}

} // namespace quillabrae::canvas
