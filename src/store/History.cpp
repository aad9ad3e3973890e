// SPDX-License-Identifier: GPL-3.0-or-later
// Undo as whole snapshots: a snapshot shares every layer that the edit did not touch.
#include "store/AdjustmentPreviews.h"
#include "store/Attempt.h"
#include "store/ProjectStore.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace quillabrae::store {

const model::PaintHistoryState& ProjectStore::history(QUuid projectID) const {
    static const model::PaintHistoryState empty;
    const auto found = m_histories.constFind(projectID);
    return found == m_histories.constEnd() ? empty : *found;
}

void ProjectStore::recordHistory(QUuid projectID, const QString& title, const QString& symbolName) {
    if (m_isRestoringHistory) return;
    if (m_attempt) m_attempt->check();
    const model::PaintProject* present = project(projectID);
    if (!present) return;
    model::PaintHistoryState& state = m_histories[projectID];
    auto& entries = state.entries;
    const bool dropsRedo = state.canRedo();
    // Whatever takes memory comes before anything changes.
    model::PaintHistoryEntry entry{QUuid::createUuid(), title, symbolName, *present};
    if (entries.size() == entries.capacity()) entries.reserve(2 * entries.size() + 1);
    m_previews->startFrom(*present);
    if (dropsRedo) entries.erase(entries.begin() + state.selectedIndex + 1, entries.end());
    if (!entries.empty() && entries.back().project == *present) {
        if (dropsRedo) Q_EMIT historyChanged(projectID);
        return;
    }
    entries.push_back(std::move(entry));
    state.selectedIndex = static_cast<int>(entries.size()) - 1;
    Q_EMIT historyChanged(projectID);
    persistAutosavedSession();
}

void ProjectStore::undo(QUuid projectID) {
    const model::PaintHistoryState& state = history(projectID);
    if (!state.canUndo()) return;
    restoreHistory(projectID, state.entries[static_cast<std::size_t>(state.selectedIndex) - 1].id);
}

void ProjectStore::redo(QUuid projectID) {
    const model::PaintHistoryState& state = history(projectID);
    if (!state.canRedo()) return;
    restoreHistory(projectID, state.entries[static_cast<std::size_t>(state.selectedIndex) + 1].id);
}

void ProjectStore::restoreHistory(QUuid projectID, QUuid entryID) {
    return Attempt::run(*this, tr("Going through history"), [&]() {
        const auto state = m_histories.find(projectID);
        if (state == m_histories.end()) return;
        const auto entry =
            std::ranges::find(state->entries, entryID, &model::PaintHistoryEntry::id);
        if (entry == state->entries.end()) return;
        const auto index = indexOf(projectID);
        if (!index) return;
        {
            // Whatever observers do now is part of the restoring and is not recorded.
            const QScopedValueRollback restoring(m_isRestoringHistory, true);
            const QString title = entry->title;
            model::PaintProject restored = entry->project;
            restored.id = projectID;
            restored.fileURL = m_openProjects[*index].fileURL;
            m_openProjects[*index] = std::move(restored);
            m_previews->startFrom(m_openProjects[*index]);
            state->selectedIndex = static_cast<int>(entry - state->entries.begin());
            Q_EMIT projectChanged(projectID);
            setActiveProjectID(projectID);
            Q_EMIT historyChanged(projectID);
            setStatusMessage(tr("Restored %1").arg(title));
        }
        persistAutosavedSession();
    });
}

} // namespace quillabrae::store
