// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

namespace quillabrae::tests {

/// A group of processes that have so much memory together, swap included: a control group of the
/// kernel, of either version, which takes root. A process that asks for more is killed. The group
/// goes with this object, so no process may be in it then.
///
/// A process that was started while its parent had such an object has the same group by it.
class MemoryGroup {
public:
    explicit MemoryGroup(qint64 bytes);
    ~MemoryGroup();
    MemoryGroup(const MemoryGroup&) = delete;
    MemoryGroup& operator=(const MemoryGroup&) = delete;

    /// Whether there is one; where this user can make none, there is not.
    bool isThere() const { return !m_folder.isEmpty(); }
    /// Puts this process, and those that it starts, into it. Whether it is there then.
    bool enter() const;
    /// The most that was held at once so far, in bytes, the kernel's pages of files included; 0
    /// where it does not tell.
    qint64 peak() const;

private:
    bool make(qint64 bytes) const;

    QString m_folder;
    bool m_isOwn = false;
};

} // namespace quillabrae::tests
