// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ByteSink.h"

#include "model/Base64.h"

#include <algorithm>

namespace quillabrae::model {
namespace {

// Small enough for the second-level cache, large enough that a write to a file costs its copy.
constexpr std::size_t pieceSize = std::size_t{48} * 1024;

} // namespace

void ByteSink::writeBase64(std::span<const std::uint8_t> bytes) {
    std::array<char, base64::encodedLength(pieceSize)> text; // NOLINT: filled before it is read
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), pieceSize));
        base64::encode(piece, text.data());
        write(std::span(text).first(base64::encodedLength(piece.size())));
        bytes = bytes.subspan(piece.size());
    }
}

void ByteArraySink::write(std::span<const char> bytes) {
    m_bytes.append(bytes.data(), std::ssize(bytes));
}

void ByteArraySink::writeBase64(std::span<const std::uint8_t> bytes) {
    const qsizetype start = m_bytes.size();
    m_bytes.resize(start + static_cast<qsizetype>(base64::encodedLength(bytes.size())));
    base64::encode(bytes, m_bytes.data() + start);
}

void CountingSink::writeBase64(std::span<const std::uint8_t> bytes) {
    m_count += static_cast<qint64>(base64::encodedLength(bytes.size()));
}

void Base64Sink::write(std::span<const char> text) {
    auto bytes = std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    while (m_restSize > 0 && m_restSize < 3 && !bytes.empty()) {
        m_rest[m_restSize++] = bytes.front();
        bytes = bytes.subspan(1);
    }
    if (m_restSize == 3) {
        m_target.writeBase64(m_rest);
        m_restSize = 0;
    }
    const std::size_t whole = bytes.size() / 3 * 3;
    m_target.writeBase64(bytes.first(whole));
    for (const std::uint8_t byte : bytes.subspan(whole)) m_rest[m_restSize++] = byte;
}

void Base64Sink::finish() {
    m_target.writeBase64(std::span(m_rest).first(m_restSize));
    m_restSize = 0;
}

} // namespace quillabrae::model
