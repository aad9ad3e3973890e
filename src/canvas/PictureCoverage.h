// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/RasterImage.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace quillabrae::canvas {

/// Which tiles of a picture are empty and which are opaque, found out one by one as they are asked
/// for: an empty one need not be composed, and what lies under an opaque one need not either.
class PictureCoverage {
public:
    static constexpr int tileSide = 64;

    enum class Tile : std::uint8_t { unknown, empty, opaque, mixed };

    PictureCoverage(int width, int height);

    /// Tile `column`, `row` of the picture, always the same one. May be asked on several threads.
    Tile tile(const raster::RasterImage& picture, int column, int row);

private:
    std::size_t m_columns;
    std::vector<std::uint8_t> m_tiles;
};

/// The coverage of the pictures that were asked for lately, for as long as their bytes are held.
class CoverageCache {
public:
    std::shared_ptr<PictureCoverage> coverageOf(const model::PngBytes& bytes,
                                                const raster::RasterImage& picture);

private:
    using Entry = std::pair<std::weak_ptr<const QByteArray>, std::shared_ptr<PictureCoverage>>;
    std::vector<Entry> m_entries;
};

} // namespace quillabrae::canvas
