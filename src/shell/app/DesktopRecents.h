// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/RecentProject.h"

#include <QObject>

#include <vector>

namespace quillabrae::platform {
class RecentDocuments;
}
namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// Tells the desktop what happens to the store's recent projects: a use of one, and a removal by
/// the user. One that only drops off the end of our list is still recent to the desktop.
class DesktopRecents final : public QObject {
public:
    DesktopRecents(const store::ProjectStore& store, platform::RecentDocuments& documents);

private:
    void tell(const std::vector<model::RecentProject>& recents);

    platform::RecentDocuments& m_documents;
    /// As they were told.
    std::vector<model::RecentProject> m_recents;
};

} // namespace quillabrae::shell
