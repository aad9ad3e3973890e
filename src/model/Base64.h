// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// Base64 in the standard alphabet, padded, without line breaks. Runs on 32 characters at a time
/// where the processor has AVX2.
namespace quillabrae::model::base64 {

/// Characters that `byteCount` bytes come to.
constexpr std::size_t encodedLength(std::size_t byteCount) {
    return (byteCount + 2) / 3 * 4;
}

/// Bytes that `text` comes to when it is base64; nothing when its length or padding rules it out.
std::optional<std::size_t> decodedLength(std::string_view text);

/// Writes `encodedLength(bytes.size())` characters to `out`.
void encode(std::span<const std::uint8_t> bytes, char* out);

/// Writes `decodedLength(text)` bytes to `out`, which must have room for them. False when `text`
/// holds anything but base64; then `out` holds no meaning.
bool decode(std::string_view text, std::uint8_t* out);

/// The ways of doing it, for tests and benchmarks; a `fastest` that the processor lacks is `plain`.
enum class Method { plain, fastest };
void encode(std::span<const std::uint8_t> bytes, char* out, Method method);
bool decode(std::string_view text, std::uint8_t* out, Method method);

} // namespace quillabrae::model::base64
