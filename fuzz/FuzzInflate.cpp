// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a band of an image's rows, of as many bytes as the first two say: what our inflater
// for sparse bands takes for good is what zlib makes of it, and zero outside of the live ranges.
#include "FuzzInput.h"
#include "raster/SparseInflate.h"
#include "support/ZlibInflate.h"

#include <algorithm>
#include <optional>

using namespace quillabrae;
using namespace quillabrae::raster;

namespace {

using Bytes = std::vector<std::uint8_t>;

bool isZero(std::uint8_t byte) {
    return byte == 0;
}

bool isZeroOutside(std::span<const std::uint8_t> bytes, const std::vector<ByteRange>& live) {
    std::size_t at = 0;
    for (const ByteRange& range : live) {
        if (range.begin < at || range.end > bytes.size()) return false;
        if (!std::ranges::all_of(bytes.subspan(at, range.begin - at), isZero)) return false;
        at = range.end;
    }
    return std::ranges::all_of(bytes.subspan(at), isZero);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::size_t length = data[0] | std::size_t{data[1]} << 8U;
    const ByteSpan band(data + 2, size - 2);
    Bytes out(length);
    std::vector<ByteRange> live;
    const bool isGood = inflateSparse(band, out, live);
    // What it refuses it leaves in a state to be cleared by the ranges, too.
    fuzz::require(isZeroOutside(out, live));
    const std::optional<Bytes> expected = quillabrae::tests::zlibInflated(band, length);
    fuzz::require(!isGood || out == expected);
    return 0;
}
