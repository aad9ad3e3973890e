// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace quillabrae::platform {
namespace {

int openedForLocking(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    const int file = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    // One that another user made in this folder can be locked all the same.
    if (file < 0 && errno == EACCES)
        return ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    return file;
}

} // namespace

FileLock::FileLock(const QString& path) : m_file(openedForLocking(path)) {
    if (m_file < 0) return;
    if (::flock(m_file, LOCK_EX | LOCK_NB) == 0)
        m_state = State::held;
    else if (errno == EWOULDBLOCK)
        m_state = State::refused;
}

FileLock::~FileLock() {
    if (m_file >= 0) ::close(m_file);
}

FileLock::FileLock(FileLock&& other) noexcept
    : m_file(std::exchange(other.m_file, -1)),
      m_state(std::exchange(other.m_state, State::unavailable)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    std::swap(m_file, other.m_file);
    std::swap(m_state, other.m_state);
    return *this;
}

FileLock takeFileLock(const QString& path) {
    return FileLock(path);
}

} // namespace quillabrae::platform
