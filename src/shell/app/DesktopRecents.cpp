// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/DesktopRecents.h"

#include "platform/RecentDocuments.h"
#include "store/ProjectStore.h"

#include <algorithm>

namespace quillabrae::shell {

DesktopRecents::DesktopRecents(const store::ProjectStore& store,
                               platform::RecentDocuments& documents)
    : m_documents(documents), m_recents(store.recents()) {
    connect(&store, &store::ProjectStore::recentsChanged, this,
            [this, &store] { tell(store.recents()); });
}

void DesktopRecents::tell(const std::vector<model::RecentProject>& recents) {
    // What was used last stands first, at a time that it was not noted with before.
    const auto isKnown = [&](const model::RecentProject& recent) {
        return std::ranges::find(m_recents, recent) != m_recents.end();
    };
    if (!recents.empty() && !isKnown(recents.front())) {
        m_documents.add(recents.front().url);
    } else {
        for (const model::RecentProject& former : m_recents) {
            if (std::ranges::find(recents, former) == recents.end()) m_documents.remove(former.url);
        }
    }
    m_recents = recents;
}

} // namespace quillabrae::shell
