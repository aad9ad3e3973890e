// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/RecentProject.h"

#include <QString>

#include <vector>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// What the welcome panel has to show that is not always the same.
struct WelcomeContent {
    struct Recent {
        model::RecentProject project;
        /// Where the file is, with the home folder shortened.
        QString folder;
    };

    std::vector<Recent> recents;
    bool offersClosedWork = false;
    /// Why the last thing that was tried failed; empty when it did not.
    QString status;

    static WelcomeContent of(const store::ProjectStore& store);
};

} // namespace quillabrae::shell
