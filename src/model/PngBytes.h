// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace quillabrae::model {

/// The bytes of one complete PNG file: immutable and shared.
///
/// Copying counts a reference, so a hundred history entries over one layer hold its bytes once.
/// Equality looks at the buffer's address first and at its bytes only where that differs.
class PngBytes {
public:
    using Buffer = std::shared_ptr<const QByteArray>;

    PngBytes() = default;
    explicit PngBytes(QByteArray bytes);

    bool isEmpty() const { return size() == 0; }
    std::size_t size() const { return m_buffer ? static_cast<std::size_t>(m_buffer->size()) : 0; }
    std::span<const std::uint8_t> bytes() const;
    /// The same bytes as a QByteArray that shares them.
    QByteArray toByteArray() const { return m_buffer ? *m_buffer : QByteArray(); }

    /// The shared buffer itself: what caches key on and hold weakly. Null when empty.
    const Buffer& buffer() const { return m_buffer; }
    bool sharesBufferWith(const PngBytes& other) const { return m_buffer == other.m_buffer; }

    friend bool operator==(const PngBytes& a, const PngBytes& b);

private:
    Buffer m_buffer;
};

} // namespace quillabrae::model
