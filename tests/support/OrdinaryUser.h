// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace quillabrae::tests {

/// While alive, files are seen with the eyes of a user who is not root.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (m_isRoot && ::seteuid(nobody) != 0) ADD_FAILURE() << "cannot act as another user";
    }
    ~OrdinaryUser() {
        if (m_isRoot && ::seteuid(0) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t nobody = 65534;

    bool m_isRoot = ::geteuid() == 0;
};

} // namespace quillabrae::tests
