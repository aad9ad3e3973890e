// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/PictureCoverage.h"

#include "raster/AlphaKernels.h"
#include "raster/Parallel.h"

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
    const Tile known = knownTile(column, row);
    if (known != Tile::unknown) return known;
    const Tile tile = examined(picture, column, row);
    std::atomic_ref(m_tiles[indexOf(column, row)])
        .store(static_cast<std::uint8_t>(tile), std::memory_order_relaxed);
    return tile;
}

PictureCoverage::Tile PictureCoverage::knownTile(int column, int row) const {
    return static_cast<Tile>(
        std::atomic_ref(m_tiles[indexOf(column, row)]).load(std::memory_order_relaxed));
}

bool PictureCoverage::isOpaque(const raster::RasterImage& picture, const QRect& tiles) {
    // One that is not ends it, most often the first: threads are called for what is left.
    if (tile(picture, tiles.left(), tiles.top()) != Tile::opaque) return false;
    bool isKnown = true;
    for (int row = tiles.top(); row <= tiles.bottom(); ++row) {
        for (int column = tiles.left(); column <= tiles.right(); ++column) {
            const Tile known = knownTile(column, row);
            if (known == Tile::unknown)
                isKnown = false;
            else if (known != Tile::opaque)
                return false;
        }
    }
    if (isKnown) return true;
    std::atomic<bool> isOpaque = true;
    raster::parallelFor(tiles.height(), [&](int row) {
        for (int column = tiles.left(); column <= tiles.right() && isOpaque; ++column)
            if (tile(picture, column, tiles.top() + row) != Tile::opaque) isOpaque = false;
    });
    return isOpaque;
}

std::shared_ptr<PictureCoverage> CoverageCache::coverageOf(const model::PngBytes& bytes,
                                                           const raster::CroppedImage& picture) {
    Entry& entry = m_entries[bytes.buffer().get()];
    // The address may have been another buffer's before, the picture may have had its margins.
    if (entry.bytes.lock() != bytes.buffer() || entry.bounds.part != picture.part())
        entry = {bytes.buffer(),
                 {picture.part(), picture.wholeSize},
                 std::make_shared<PictureCoverage>(picture.image.width(), picture.image.height())};
    return entry.coverage;
}

std::optional<CoverageCache::Bounds> CoverageCache::boundsOf(const model::PngBytes& bytes) const {
    const auto found = m_entries.find(bytes.buffer().get());
    if (found == m_entries.end() || found->second.bytes.lock() != bytes.buffer())
        return std::nullopt;
    return found->second.bounds;
}

void CoverageCache::forgetDead() {
    std::erase_if(m_entries, [](const auto& entry) { return entry.second.bytes.expired(); });
}

} // namespace quillabrae::canvas
