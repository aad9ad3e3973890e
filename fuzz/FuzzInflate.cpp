// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a band of an image's rows, of as many bytes as the first two say: what our inflater
// for sparse bands takes for good is what zlib makes of it, and zero outside of the live ranges.
#include "raster/SparseInflate.h"

#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

using namespace quillabrae::raster;

namespace {

using Bytes = std::vector<std::uint8_t>;

/// With an end put to it; nothing when zlib refuses it.
std::optional<Bytes> inflatedByZlib(ByteSpan band, std::size_t size) {
    Bytes deflated(band.begin(), band.end());
    deflated.insert(deflated.end(), {0x03, 0x00});
    Bytes out(size + 1);
    z_stream stream{};
    inflateInit2(&stream, -MAX_WBITS);
    stream.next_in = deflated.data();
    stream.avail_in = static_cast<uInt>(deflated.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    const int result = inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    if (result != Z_STREAM_END || stream.avail_in != 0) return std::nullopt;
    out.resize(stream.total_out);
    return out;
}

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
    if (!isZeroOutside(out, live)) std::abort();
    const std::optional<Bytes> expected = inflatedByZlib(band, length);
    if (isGood && expected && out != *expected) std::abort();
    return 0;
}
