// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/CodecCounts.h"

#include <atomic>

namespace quillabrae::raster {
namespace {

std::atomic<std::size_t> decodedFiles = 0;
std::atomic<std::size_t> encodedFiles = 0;
std::atomic<std::size_t> compressedBands = 0;

} // namespace

CodecCounts codecCounts() {
    return {decodedFiles, encodedFiles, compressedBands};
}

void detail::countDecodedFile() {
    decodedFiles.fetch_add(1, std::memory_order_relaxed);
}

void detail::countEncodedFile() {
    encodedFiles.fetch_add(1, std::memory_order_relaxed);
}

void detail::countCompressedBand() {
    compressedBands.fetch_add(1, std::memory_order_relaxed);
}

} // namespace quillabrae::raster
