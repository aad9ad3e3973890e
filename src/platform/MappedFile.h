// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstddef>
#include <optional>
#include <string_view>

namespace quillabrae::platform {

/// The content of a file as the system holds it, without a copy of its own.
///
/// Whoever maps a file knows that nobody shortens it meanwhile: touching what is gone ends the
/// program. That it can be read now has been tried.
class MappedFile {
public:
    /// Bytes behind the content that can be read as well and are zero.
    static constexpr std::size_t padding = 64;

    /// Nothing for what is no file, is empty, cannot be read, or cannot be mapped here.
    static std::optional<MappedFile> open(const QString& path);
    ~MappedFile();
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;

    std::string_view text() const { return {m_start, m_size}; }

private:
    MappedFile(char* start, std::size_t size, std::size_t mappedSize)
        : m_start(start), m_size(size), m_mappedSize(mappedSize) {}

    char* m_start = nullptr;
    std::size_t m_size = 0;
    std::size_t m_mappedSize = 0;
};

} // namespace quillabrae::platform
