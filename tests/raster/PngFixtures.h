// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/PngChunks.h"
#include "raster/RasterImage.h"

#include <QByteArray>

#include <cstdint>
#include <random>
#include <vector>

/// Images and PNG files for the codec's tests.
namespace quillabrae::raster::fixtures {

/// Premultiplied pixels of every kind: opaque, clear and translucent runs, flat and noisy.
RasterImage randomImage(int width, int height, unsigned seed);

/// Rows that repeat the one above but for a few pixels, as a drawing's do.
RasterImage calmImage(int width, int height, unsigned seed);

/// Straight RGBA8 from premultiplied, by the definition.
std::vector<std::uint8_t> straightPixels(const RasterImage& image);
/// The reverse, by the definition.
RasterImage premultipliedImage(int width, int height, const std::vector<std::uint8_t>& straight);

/// A PNG form as libpng writes it.
struct Form {
    int colorType = 6;
    int bitDepth = 8;
    bool isInterlaced = false;
    bool hasTransparency = false;
};

/// A random picture in that form, written by libpng with all filters and a comment chunk.
QByteArray libpngFile(const Form& form, int width, int height, unsigned seed);

/// Straight RGBA8 by libpng's plain expansion; empty when libpng finds fault with the file.
std::vector<std::uint8_t> libpngPixels(const QByteArray& file);

/// A chunk with its length and CRC, computed bit by bit.
QByteArray chunk(const char* type, const QByteArray& data);
QByteArray bigEndian32(std::uint32_t value);

inline const QByteArray signature(reinterpret_cast<const char*>(pngSignature.data()),
                                  static_cast<qsizetype>(pngSignature.size()));
/// The IHDR chunk, which comes behind the signature.
QByteArray header(std::uint32_t width, std::uint32_t height, int depth = 8, int colorType = 6,
                  int interlacing = 0);

/// A PNG with the index of bands for these filtered rows, each band's compressed to one of `parts`.
QByteArray bandedFile(int width, int height, const std::vector<QByteArray>& bands,
                      const std::vector<QByteArray>& parts);
/// The same of bands that stand one behind the other, compressed as ours are.
QByteArray bandedFile(int width, int height, const QByteArray& filteredRows);

inline model::PngBytes pngBytes(const QByteArray& file) {
    return model::PngBytes(file);
}

} // namespace quillabrae::raster::fixtures
