// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/SparseBytes.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// Deflate for bytes that are mostly zero, as the differences between the rows of a drawing or a
/// screenshot are. All zeros that follow one another are one run, told by the cheapest of
/// references, that to the last byte; outside the live ranges they are not even read. What is not
/// zero is looked up four bytes at a time, a pixel, for an earlier place that goes on the same for
/// eight or more.
class SparseDeflater {
public:
    /// Compresses into a run of deflate blocks, none of them final, that ends on a byte boundary.
    /// Returns the bytes written to `out`, which has room for
    /// `deflatedSizeBound(bytes.bytes.size())`, as long as no more than half of the bytes are in
    /// live ranges.
    std::size_t deflate(const SparseBytes& bytes, std::span<std::uint8_t> out);

private:
    static constexpr unsigned placeBits = 12;

    std::vector<std::uint32_t> m_tokens;
    /// Where eight bytes with that hash were last.
    std::array<std::uint32_t, std::size_t{1} << placeBits> m_places{};
};

} // namespace quillabrae::raster
