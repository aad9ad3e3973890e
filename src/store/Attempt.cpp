// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Attempt.h"

#include "raster/DecodeCache.h"

#include <QThread>

#include <algorithm>

namespace quillabrae::store {

ProjectStore::Attempt::Attempt(ProjectStore& store)
    : m_store(store), m_outer(store.m_attempt), m_loopLevel(QThread::currentThread()->loopLevel()) {
    for (const model::PaintProject& project : store.m_openProjects)
        m_openBefore.push_back(project.id);
    if (const model::PaintProject* active = store.activeProject()) {
        m_before = *active;
        if (const auto* entry = presentEntry(store, active->id)) m_entryBefore = entry->id;
    }
    store.m_attempt = this;
}

bool ProjectStore::Attempt::isUnderWayHere() const {
    return QThread::currentThread()->loopLevel() == m_loopLevel;
}

const model::PaintHistoryEntry* ProjectStore::Attempt::presentEntry(const ProjectStore& store,
                                                                    QUuid projectID) {
    const model::PaintHistoryState& state = store.history(projectID);
    const auto index = static_cast<std::size_t>(state.selectedIndex);
    return index < state.entries.size() ? &state.entries[index] : nullptr;
}

void ProjectStore::Attempt::giveUp(const QString& name) {
    // What the failure itself needs, and whatever comes next, has to have room.
    raster::clearDecodeCache();
    raster::releaseKeptPixelMemory();
    m_store.m_attempt = nullptr;
    closeNewProjects();
    putBack();
    m_store.setStatusMessage(tr("%1 failed: There is not enough memory").arg(name),
                             StatusKind::failure);
    if (std::exchange(m_store.m_isAutosaveDue, false)) m_store.persistAutosavedSession();
}

/// Only one that has a history was ever ready.
void ProjectStore::Attempt::closeNewProjects() {
    auto& projects = m_store.m_openProjects;
    const auto unready = std::ranges::find_if(projects, [&](const model::PaintProject& project) {
        return std::ranges::count(m_openBefore, project.id) == 0 &&
               m_store.history(project.id).entries.empty();
    });
    if (unready == projects.end()) return;
    const QUuid id = unready->id;
    projects.erase(unready);
    m_store.forgetProject(id);
    Q_EMIT m_store.openProjectsChanged();
    if (m_store.activeProjectID() == id)
        m_store.setActiveProjectID(m_before ? std::optional(m_before->id) : std::nullopt);
}

void ProjectStore::Attempt::putBack() {
    const auto index = m_before ? m_store.indexOf(m_before->id) : std::nullopt;
    if (!index) return;
    model::PaintProject& project = m_store.m_openProjects[*index];
    model::PaintProject whole = *std::move(m_before);
    const model::PaintHistoryEntry* entry = presentEntry(m_store, whole.id);
    if (entry && entry->id != m_entryBefore) {
        whole = entry->project;
        whole.fileURL = project.fileURL;
    }
    if (project == whole) return;
    project = std::move(whole);
    Q_EMIT m_store.projectChanged(project.id);
}

bool ProjectStore::attempt(const QString& name, const std::function<void()>& work) {
    return Attempt::run(*this, name, [&work] {
        work();
        return true;
    });
}

platform::LatestWork::Job ProjectStore::attempted(const QString& name,
                                                  platform::LatestWork::Job job) {
    return [this, name, job = std::move(job)]() -> platform::LatestWork::Delivery {
        try {
            const raster::PixelRefusals refusals;
            auto delivery = job();
            if (!refusals.any()) return delivery;
        } catch (const std::bad_alloc&) {
            // Told where the result would have been.
        }
        return [this, name] { attempt(name, [] { throw std::bad_alloc(); }); };
    };
}

} // namespace quillabrae::store
