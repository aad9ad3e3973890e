// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

namespace quillabrae::tests {

/// While alive, no file can grow beyond a size, which stands for a disk that is full: writing
/// succeeds in part and then fails, with "File too large" for a reason.
class FullDisk {
public:
    explicit FullDisk(rlim_t room) {
        if (getrlimit(RLIMIT_FSIZE, &m_formerLimit) != 0) ADD_FAILURE() << "no limit is known";
        rlimit lower = m_formerLimit;
        lower.rlim_cur = room;
        if (setrlimit(RLIMIT_FSIZE, &lower) != 0) ADD_FAILURE() << "no limit can be set";
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_formerLimit);
        std::signal(SIGXFSZ, m_formerHandler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_formerLimit{};
    void (*m_formerHandler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

} // namespace quillabrae::tests
