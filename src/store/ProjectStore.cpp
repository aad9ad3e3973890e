// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ProjectStore.h"

#include "persistence/AppPersistenceService.h"
#include "platform/Clock.h"
#include "store/AdjustmentPreviews.h"
#include "store/GenerativeFills.h"
#include "store/RecentList.h"

#include <algorithm>
#include <utility>

namespace quillabrae::store {

ProjectStore::ProjectStore(StoreEnvironment environment, Persistence persistence)
    : m_environment(std::move(environment)),
      m_persistence(persistence),
      m_clipboard(m_environment.pasteboard, m_environment.paths.clipboardFolder(),
                  m_environment.work),
      m_previews(std::make_unique<AdjustmentPreviews>(m_environment.makeLatestWork)),
      m_fills(std::make_unique<GenerativeFills>()),
      m_statusMessage(tr("Ready")),
      m_zoomToFitRequestID(QUuid::createUuid()),
      m_recoveryFolder(m_environment.paths.autosaveFolder(), m_environment.takeLock) {
    if (!isPersistent()) return;
    removeOldClipboardFiles();
    const auto stored =
        persistence::AppPersistenceService::loadRecents(m_environment.preferences, recentsKey());
    m_recents = deduplicatedRecents(stored);
    if (m_recents != stored) saveRecents();
    restoreSettings();
    restoreAutosavedSession();
}

ProjectStore::~ProjectStore() = default;

void ProjectStore::setActiveProjectID(std::optional<QUuid> id) {
    if (m_activeProjectID == id) return;
    m_activeProjectID = id;
    Q_EMIT activeProjectChanged();
}

std::optional<std::size_t> ProjectStore::indexOf(QUuid id) const {
    const auto found = std::ranges::find(m_openProjects, id, &model::PaintProject::id);
    if (found == m_openProjects.end()) return std::nullopt;
    return static_cast<std::size_t>(found - m_openProjects.begin());
}

std::optional<std::size_t> ProjectStore::activeIndex() const {
    return m_activeProjectID ? indexOf(*m_activeProjectID) : std::nullopt;
}

const model::PaintProject* ProjectStore::project(QUuid id) const {
    const auto index = indexOf(id);
    return index ? &m_openProjects[*index] : nullptr;
}

const model::PaintProject* ProjectStore::activeProject() const {
    return m_activeProjectID ? project(*m_activeProjectID) : nullptr;
}

bool ProjectStore::editActiveProject(const std::function<void(model::PaintProject&)>& edit) {
    const auto index = activeIndex();
    if (!index) return false;
    const model::PaintProject before = m_openProjects[*index];
    edit(m_openProjects[*index]);
    if (m_openProjects[*index] != before) Q_EMIT projectChanged(before.id);
    return true;
}

model::PaintProject* ProjectStore::projectToEdit() {
    const auto index = activeIndex();
    return index ? &m_openProjects[*index] : nullptr;
}

QUuid ProjectStore::finishEdit(model::PaintProject& project) {
    const QUuid id = project.id;
    project.lastModified = m_environment.clock.now();
    Q_EMIT projectChanged(id);
    return id;
}

void ProjectStore::setStatusMessage(const QString& message, StatusKind kind) {
    if (m_statusMessage == message && m_statusKind == kind) return;
    m_statusMessage = message;
    m_statusKind = kind;
    Q_EMIT statusMessageChanged();
}

} // namespace quillabrae::store
