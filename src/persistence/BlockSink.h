// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ByteSink.h"

#include <QFileDevice>

#include <vector>

namespace quillabrae::persistence {

/// Streams into an unbuffered file in whole blocks, so that writing over a file that the system
/// holds in memory never makes it fetch a page of it. Base64 is made in the block itself. Throws
/// FileError; `finish` has to be called at the end.
class BlockSink final : public model::ByteSink {
public:
    /// `file` is open, at its start, and outlives the sink. Errors name `target`, which it is going
    /// to be.
    BlockSink(QFileDevice& file, QString target);

    void write(std::span<const char> bytes) override;
    void writeBase64(std::span<const std::uint8_t> bytes) override;
    /// Writes what is left and cuts off what the file held beyond it.
    void finish();

private:
    std::span<char> room() { return std::span(m_block).subspan(m_used); }
    void flush();
    [[noreturn]] void fail() const;

    QFileDevice& m_file;
    QString m_target;
    std::vector<char> m_block;
    std::size_t m_used = 0;
};

} // namespace quillabrae::persistence
