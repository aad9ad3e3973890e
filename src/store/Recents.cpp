// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"
#include "platform/Clock.h"
#include "store/FileLocation.h"
#include "store/ProjectStore.h"
#include "store/RecentList.h"

#include <QFileInfo>
#include <QSet>

#include <utility>

namespace quillabrae::store {

QString recentsKey() {
    return QStringLiteral("Quillabrae.recents");
}

std::vector<model::RecentProject> deduplicatedRecents(
    const std::vector<model::RecentProject>& recents) {
    std::vector<model::RecentProject> kept;
    QSet<QString> seen;
    for (model::RecentProject recent : recents) {
        recent.url = fileLocation(recent.url);
        if (seen.contains(recent.url.path())) continue;
        seen.insert(recent.url.path());
        kept.push_back(std::move(recent));
    }
    return kept;
}

void ProjectStore::rememberRecent(const QUrl& url) {
    // The links of this one are followed here, once: it has just been read or written.
    const QUrl location = standardizedFileLocation(url);
    std::vector<model::RecentProject> list = {
        {QFileInfo(fileLocation(url).path()).completeBaseName(), location,
         m_environment.clock.now()}};
    list.insert(list.end(), m_recents.begin(), m_recents.end());
    list = deduplicatedRecents(list);
    if (list.size() > maximumRecentCount) list.resize(maximumRecentCount);
    m_recents = std::move(list);
    Q_EMIT recentsChanged();
    saveRecents();
}

void ProjectStore::removeRecent(const model::RecentProject& recent) {
    const QUrl location = fileLocation(recent.url);
    const auto removed = std::erase_if(m_recents, [&](const model::RecentProject& candidate) {
        return fileLocation(candidate.url).path() == location.path();
    });
    if (removed > 0) Q_EMIT recentsChanged();
    saveRecents();
}

void ProjectStore::saveRecents() {
    if (!isPersistent()) return;
    persistence::AppPersistenceService::saveRecents(m_environment.preferences, recentsKey(),
                                                    m_recents);
}

} // namespace quillabrae::store
