// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace quillabrae::platform {

/// Lets one program at a time say that something is its own, by a file that stands for it. The
/// system lets go of the lock however the program ends, so what is locked belongs to a program that
/// runs; the file stays and means nothing. Two locks of one program exclude each other as well.
class FileLock {
public:
    enum class State {
        held,
        /// Another one holds it.
        refused,
        /// There is no telling: the file cannot be made, or its file system knows no locks.
        unavailable
    };

    /// One that is unavailable.
    FileLock() = default;
    /// Takes the lock if it is free; does not wait. The folder has to be there.
    explicit FileLock(const QString& path);
    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;

    State state() const { return m_state; }
    bool isHeld() const { return m_state == State::held; }

private:
    int m_file = -1;
    State m_state = State::unavailable;
};

using LockTaker = std::function<FileLock(const QString& path)>;

/// The locks of the machine's own file system.
FileLock takeFileLock(const QString& path);

} // namespace quillabrae::platform
