// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PngInterner.h"

#include "model/Base64.h"

#include <QHashFunctions>

#include <algorithm>
#include <array>

namespace quillabrae::model {
namespace {

constexpr std::size_t pieceLength = std::size_t{32} * 1024;

// Whether `text` is the base64 of `bytes`, whose length is what the text's length says. Decodes a
// piece at a time beside the bytes.
bool spells(std::string_view text, std::span<const std::uint8_t> bytes) {
    std::array<std::uint8_t, pieceLength / 4 * 3> piece; // NOLINT: filled before it is read
    while (!text.empty()) {
        const std::string_view letters = text.substr(0, pieceLength);
        const std::size_t size = std::min(bytes.size(), piece.size());
        if (base64::decodedLength(letters) != size) return false;
        if (!base64::decode(letters, piece.data())) return false;
        if (!std::equal(piece.data(), piece.data() + size, bytes.data())) return false;
        text.remove_prefix(letters.size());
        bytes = bytes.subspan(size);
    }
    return true;
}

} // namespace

std::optional<PngBytes> PngInterner::intern(std::string_view base64Text) {
    const std::optional<std::size_t> size = base64::decodedLength(base64Text);
    if (!size) return std::nullopt;
    const std::size_t hash =
        qHashBits(base64Text.data(), base64Text.size(), QHashSeed::globalSeed());
    const auto [first, last] = m_known.equal_range(hash);
    const auto known = std::find_if(first, last, [&](const auto& candidate) {
        return candidate.second.size() == *size && spells(base64Text, candidate.second.bytes());
    });
    if (known != last) return known->second;

    QByteArray bytes(static_cast<qsizetype>(*size), Qt::Uninitialized);
    if (!base64::decode(base64Text, reinterpret_cast<std::uint8_t*>(bytes.data())))
        return std::nullopt;
    PngBytes result(std::move(bytes));
    m_known.emplace(hash, result);
    return result;
}

} // namespace quillabrae::model
