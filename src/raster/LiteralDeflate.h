// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngChunks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Deflate without back references, for the noise of photographs: there a search for repetitions
/// finds next to nothing and takes most of the time.
namespace quillabrae::raster {

using ByteCounts = std::array<std::uint32_t, 256>;

ByteCounts countBytes(ByteSpan bytes);

/// About the bytes that `deflateLiterals` makes of bytes with those counts.
std::size_t literalSize(const ByteCounts& counts);

/// Compresses into a run of deflate blocks, none of them final, that ends on a byte boundary.
/// Returns the bytes written to `out`, which has room for `deflatedSizeBound(bytes.size())`.
std::size_t deflateLiterals(ByteSpan bytes, std::span<std::uint8_t> out);

} // namespace quillabrae::raster
