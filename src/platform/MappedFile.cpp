// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MappedFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace quillabrae::platform {
namespace {

std::size_t wholePages(std::size_t size) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page;
}

/// Brings all of it to memory; false where some of it cannot be read or there is no telling.
bool isReadable(char* start, std::size_t size) {
#ifdef MADV_POPULATE_READ
    return ::madvise(start, size, MADV_POPULATE_READ) == 0;
#else
    static_cast<void>(start);
    static_cast<void>(size);
    return false;
#endif
}

std::optional<std::size_t> fileSize(int file) {
    struct stat information {};
    if (::fstat(file, &information) != 0 || !S_ISREG(information.st_mode)) return std::nullopt;
    return static_cast<std::size_t>(information.st_size);
}

} // namespace

std::optional<MappedFile> MappedFile::open(const QString& path) {
    // A pipe must not keep the program waiting for somebody at its other end.
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return std::nullopt;
    std::optional<MappedFile> mapped;
    if (const auto size = fileSize(file); size && *size > 0) {
        // The file's pages lie on zero pages that reach farther.
        const std::size_t mappedSize = wholePages(*size + padding);
        void* const zeros =
            ::mmap(nullptr, mappedSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (zeros != MAP_FAILED) {
            mapped = MappedFile(static_cast<char*>(zeros), *size, mappedSize);
            const bool isThere =
                ::mmap(zeros, *size, PROT_READ, MAP_PRIVATE | MAP_FIXED, file, 0) != MAP_FAILED;
            if (!isThere || !isReadable(mapped->m_start, *size)) mapped.reset();
        }
    }
    ::close(file);
    return mapped;
}

MappedFile::~MappedFile() {
    if (m_start != nullptr) ::munmap(m_start, m_mappedSize);
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : m_start(std::exchange(other.m_start, nullptr)),
      m_size(std::exchange(other.m_size, 0)),
      m_mappedSize(std::exchange(other.m_mappedSize, 0)) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
    std::swap(m_start, other.m_start);
    std::swap(m_size, other.m_size);
    std::swap(m_mappedSize, other.m_mappedSize);
    return *this;
}

} // namespace quillabrae::platform
