// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillabrae::tests {

/// What zlib makes of a run of deflate blocks of which none is final, after an end has been put to
/// it; nothing when it is damaged or comes to more than `size` and one bytes.
inline std::optional<std::vector<std::uint8_t>> zlibInflated(std::span<const std::uint8_t> blocks,
                                                             std::size_t size) {
    std::vector<std::uint8_t> deflated(blocks.begin(), blocks.end());
    deflated.push_back(0x03);
    deflated.push_back(0x00);
    std::vector<std::uint8_t> out(size + 1);
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

} // namespace quillabrae::tests
