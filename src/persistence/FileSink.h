// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ByteSink.h"
#include "platform/FileOperations.h"

namespace quillabrae::persistence {

/// Streams a document into a file. Throws platform::FileOperationError.
class FileSink final : public model::ByteSink {
public:
    /// `file` outlives the sink; whoever made it finishes it.
    explicit FileSink(platform::DurableFile& file) : m_file(file) {}

    void write(std::span<const char> bytes) override { m_file.write(bytes); }

private:
    platform::DurableFile& m_file;
};

} // namespace quillabrae::persistence
