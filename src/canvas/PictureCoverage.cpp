// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/PictureCoverage.h"

#include "raster/AlphaKernels.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>

namespace quillabrae::canvas {
namespace {

bool isAllOpaque(const std::uint8_t* pixels, std::size_t count) {
    std::uint32_t everyBit = 0xff000000U;
    for (std::size_t i = 0; i < count; ++i) {
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
    const auto width =
        static_cast<std::size_t>(std::min(PictureCoverage::tileSide, picture.width() - left));
    const std::size_t offset = 4 * static_cast<std::size_t>(left);
    const int bottom = std::min(top + PictureCoverage::tileSide, picture.height());
    const std::uint8_t firstAlpha = picture.row(top)[offset + 3];
    if (firstAlpha != 0 && firstAlpha != 255) return Tile::mixed;
    for (int y = top; y < bottom; ++y) {
        const std::uint8_t* pixels = picture.row(y) + offset;
        const bool isAlike =
            firstAlpha == 0 ? raster::isAllZero(pixels, 4 * width) : isAllOpaque(pixels, width);
        if (!isAlike) return Tile::mixed;
    }
    return firstAlpha == 0 ? Tile::empty : Tile::opaque;
}

} // namespace

PictureCoverage::PictureCoverage(int width, int height)
    : m_columns(static_cast<std::size_t>((width + tileSide - 1) / tileSide)),
      m_tiles(m_columns * static_cast<std::size_t>((height + tileSide - 1) / tileSide)) {}

PictureCoverage::Tile PictureCoverage::tile(const raster::RasterImage& picture, int column,
                                            int row) {
    // Two threads may examine the same tile: they find the same.
    const std::atomic_ref<std::uint8_t> known(
        m_tiles[static_cast<std::size_t>(row) * m_columns + static_cast<std::size_t>(column)]);
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
