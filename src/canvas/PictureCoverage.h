// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/CroppedImage.h"
#include "raster/RasterImage.h"

#include <QRect>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
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
    /// The same if it is known by now.
    Tile knownTile(int column, int row) const;
    /// Whether all tiles of these, given by first and last column and row, are opaque.
    bool isOpaque(const raster::RasterImage& picture, const QRect& tiles);

private:
    std::size_t indexOf(int column, int row) const {
        return static_cast<std::size_t>(row) * m_columns + static_cast<std::size_t>(column);
    }

    std::size_t m_columns;
    mutable std::vector<std::uint8_t> m_tiles;
};

/// What is known of the pictures that were asked for lately, for as long as their bytes are held.
class CoverageCache {
public:
    std::shared_ptr<PictureCoverage> coverageOf(const model::PngBytes& bytes,
                                                const raster::CroppedImage& picture);

    /// Outside of `part` the picture, `wholeSize` pixels large, is transparent.
    struct Bounds {
        QRect part;
        QSize wholeSize;
    };
    /// Nothing when the picture has not been asked for.
    std::optional<Bounds> boundsOf(const model::PngBytes& bytes) const;

    /// Drops what is known of bytes that nobody holds any more.
    void forgetDead();

private:
    struct Entry {
        std::weak_ptr<const QByteArray> bytes;
        Bounds bounds;
        std::shared_ptr<PictureCoverage> coverage;
    };
    std::unordered_map<const QByteArray*, Entry> m_entries;
};

} // namespace quillabrae::canvas
