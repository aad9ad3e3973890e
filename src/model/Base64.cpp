// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Base64.h"

#include "model/Base64Wide.h"

#include <array>

namespace quillabrae::model::base64 {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noSextet = 0xff;

constexpr std::array<std::uint8_t, 256> sextetTable = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(noSextet);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return table;
}();

std::uint32_t sextet(char letter) {
    return sextetTable[static_cast<unsigned char>(letter)];
}

char letter(std::uint32_t bits) {
    return alphabet[bits & 0x3f];
}

void encodePlain(std::span<const std::uint8_t> bytes, char* out) {
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3, out += 4) {
        const std::uint32_t bits = static_cast<std::uint32_t>(bytes[i]) << 16 |
                                   static_cast<std::uint32_t>(bytes[i + 1]) << 8 | bytes[i + 2];
        out[0] = letter(bits >> 18);
        out[1] = letter(bits >> 12);
        out[2] = letter(bits >> 6);
        out[3] = letter(bits);
    }
    if (i == bytes.size()) return;
    const bool two = bytes.size() - i == 2;
    const std::uint32_t bits = static_cast<std::uint32_t>(bytes[i]) << 16 |
                               (two ? static_cast<std::uint32_t>(bytes[i + 1]) << 8 : 0U);
    out[0] = letter(bits >> 18);
    out[1] = letter(bits >> 12);
    out[2] = two ? letter(bits >> 6) : '=';
    out[3] = '=';
}

// `text` is whole quadruples, only the last of which may be padded.
bool decodePlain(std::string_view text, std::uint8_t* out) {
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    const std::size_t whole = padding == 0 ? text.size() : text.size() - 4;
    for (std::size_t i = 0; i < whole; i += 4, out += 3) {
        const std::uint32_t a = sextet(text[i]);
        const std::uint32_t b = sextet(text[i + 1]);
        const std::uint32_t c = sextet(text[i + 2]);
        const std::uint32_t d = sextet(text[i + 3]);
        if (((a | b | c | d) & 0xc0) != 0) return false;
        const std::uint32_t bits = a << 18 | b << 12 | c << 6 | d;
        out[0] = static_cast<std::uint8_t>(bits >> 16);
        out[1] = static_cast<std::uint8_t>(bits >> 8);
        out[2] = static_cast<std::uint8_t>(bits);
    }
    if (padding == 0) return true;
    const std::uint32_t a = sextet(text[whole]);
    const std::uint32_t b = sextet(text[whole + 1]);
    const std::uint32_t c = padding == 1 ? sextet(text[whole + 2]) : 0;
    if (((a | b | c) & 0xc0) != 0) return false;
    out[0] = static_cast<std::uint8_t>(a << 2 | b >> 4);
    if (padding == 1) out[1] = static_cast<std::uint8_t>((b & 0xf) << 4 | c >> 2);
    return true;
}

bool isWide(Method method) {
    return method == Method::fastest && hasWideLoops();
}

} // namespace

std::optional<std::size_t> decodedLength(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    return text.size() / 4 * 3 - padding;
}

void encode(std::span<const std::uint8_t> bytes, char* out) {
    encode(bytes, out, Method::fastest);
}

bool decode(std::string_view text, std::uint8_t* out) {
    return decode(text, out, Method::fastest);
}

void encode(std::span<const std::uint8_t> bytes, char* out, Method method) {
    const std::size_t done = isWide(method) ? encodeWide(bytes, out) : 0;
    encodePlain(bytes.subspan(done), out + done / 3 * 4);
}

bool decode(std::string_view text, std::uint8_t* out, Method method) {
    if (text.size() % 4 != 0) return false;
    const std::size_t done = isWide(method) ? decodeWide(text, out) : 0;
    return decodePlain(text.substr(done), out + done / 4 * 3);
}

} // namespace quillabrae::model::base64
