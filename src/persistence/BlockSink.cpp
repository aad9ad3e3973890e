// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/BlockSink.h"

#include "model/Base64.h"
#include "persistence/FileError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace quillabrae::persistence {
namespace {

// A multiple of every page size, and small enough for the second-level cache.
constexpr std::size_t blockSize = std::size_t{256} * 1024;

} // namespace

BlockSink::BlockSink(QFileDevice& file, QString target)
    : m_file(file), m_target(std::move(target)), m_block(blockSize) {}

void BlockSink::write(std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), room().size()));
        std::ranges::copy(piece, room().begin());
        m_used += piece.size();
        bytes = bytes.subspan(piece.size());
        if (room().empty()) flush();
    }
}

void BlockSink::writeBase64(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const std::size_t fitting = std::min(bytes.size(), room().size() / 4 * 3);
        if (fitting == 0) {
            // A group of four letters lies across the end of the block.
            const auto group = bytes.first(std::min<std::size_t>(bytes.size(), 3));
            std::array<char, 4> letters{};
            model::base64::encode(group, letters.data());
            write(letters);
            bytes = bytes.subspan(group.size());
            continue;
        }
        model::base64::encode(bytes.first(fitting), room().data());
        m_used += model::base64::encodedLength(fitting);
        bytes = bytes.subspan(fitting);
        if (room().empty()) flush();
    }
}

void BlockSink::finish() {
    flush();
    errno = 0;
    while (!m_file.resize(m_file.pos()))
        if (errno != EINTR) fail();
}

void BlockSink::flush() {
    const auto size = static_cast<qint64>(m_used);
    // A write that the system cuts short has no reason; the one after it has.
    for (qint64 done = 0; done < size;) {
        const qint64 written = m_file.write(m_block.data() + done, size - done);
        if (written <= 0) fail();
        done += written;
    }
    m_used = 0;
}

void BlockSink::fail() const {
    throw FileError::notWritten(m_target, m_file.errorString());
}

} // namespace quillabrae::persistence
