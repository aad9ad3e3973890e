// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quillabrae::model {

/// Where a document is streamed to. A sink that cannot take what it is given throws.
class ByteSink {
public:
    virtual ~ByteSink() = default;

    virtual void write(std::span<const char> bytes) = 0;
    /// Writes the base64 text of `bytes`, a piece at a time and never as a whole in memory.
    virtual void writeBase64(std::span<const std::uint8_t> bytes);
};

/// Gathers everything in one byte array.
class ByteArraySink final : public ByteSink {
public:
    /// Makes room for `expectedSize` bytes at once.
    explicit ByteArraySink(qsizetype expectedSize = 0) { m_bytes.reserve(expectedSize); }

    void write(std::span<const char> bytes) override;
    void writeBase64(std::span<const std::uint8_t> bytes) override;

    QByteArray take() { return std::exchange(m_bytes, {}); }

private:
    QByteArray m_bytes;
};

/// Only counts. Base64 is counted by arithmetic, so a picture costs it nothing.
class CountingSink final : public ByteSink {
public:
    void write(std::span<const char> bytes) override { m_count += std::ssize(bytes); }
    void writeBase64(std::span<const std::uint8_t> bytes) override;

    qint64 count() const { return m_count; }

private:
    qint64 m_count = 0;
};

/// Passes what it is given on to another sink as base64 text. `finish` writes the last letters and
/// has to be called once, at the end.
class Base64Sink final : public ByteSink {
public:
    /// `target` outlives this sink.
    explicit Base64Sink(ByteSink& target) : m_target(target) {}

    void write(std::span<const char> bytes) override;
    void finish();

private:
    ByteSink& m_target;
    /// Bytes that do not make a whole group of three yet.
    std::array<std::uint8_t, 3> m_rest{};
    std::size_t m_restSize = 0;
};

} // namespace quillabrae::model
