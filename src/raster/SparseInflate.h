// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/SparseBytes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// Inflates a run of deflate blocks, of which none is final, that ends on a byte boundary and holds
/// exactly as many bytes as `out`, which is all zero before. Zeros are not written but left there,
/// so that what is mostly zero costs little more than its compressed size. `live` becomes the
/// ranges that may be anything else.
///
/// False when it is not so, or when the codes are of a kind that only others make; then `out` holds
/// what came before, and `live` still tells all bytes of it that may have been written.
bool inflateSparse(ByteSpan deflated, std::span<std::uint8_t> out, std::vector<ByteRange>& live);

} // namespace quillabrae::raster
