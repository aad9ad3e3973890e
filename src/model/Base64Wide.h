// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The wide loops of base64: each does as much of a prefix as it can and says how much that was.
namespace quillabrae::model::base64 {

/// Whether this processor has what the wide loops need.
bool hasWideLoops();

/// Bytes encoded, a multiple of 3.
std::size_t encodeWide(std::span<const std::uint8_t> bytes, char* out);
/// Characters decoded, a multiple of 4. Stops before anything that is not base64.
std::size_t decodeWide(std::string_view text, std::uint8_t* out);

} // namespace quillabrae::model::base64
