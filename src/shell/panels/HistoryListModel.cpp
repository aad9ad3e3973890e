// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/HistoryListModel.h"

#include "store/ProjectStore.h"

#include <algorithm>
#include <utility>

namespace quillabrae::shell {

HistoryListModel::HistoryListModel(store::ProjectStore& store, QObject* parent)
    : QAbstractListModel(parent), m_store(store) {
    using store::ProjectStore;
    connect(&m_store, &ProjectStore::activeProjectChanged, this, &HistoryListModel::follow);
    connect(&m_store, &ProjectStore::openProjectsChanged, this, &HistoryListModel::follow);
    connect(&m_store, &ProjectStore::historyChanged, this, &HistoryListModel::follow);
    follow();
}

int HistoryListModel::commonRows(const model::PaintHistoryState& history) const {
    const auto different =
        std::ranges::mismatch(m_rows, history.entries, {}, &Row::id, &model::PaintHistoryEntry::id);
    return static_cast<int>(different.in1 - m_rows.begin());
}

void HistoryListModel::follow() {
    const auto& history = m_store.history(m_store.activeProjectID().value_or(QUuid()));
    const int common = commonRows(history);
    if (common < rowCount()) {
        beginRemoveRows({}, common, rowCount() - 1);
        m_rows.resize(static_cast<std::size_t>(common));
        endRemoveRows();
    }
    const int count = static_cast<int>(history.entries.size());
    if (common < count) {
        beginInsertRows({}, common, count - 1);
        for (std::size_t row = m_rows.size(); row < history.entries.size(); ++row) {
            const model::PaintHistoryEntry& entry = history.entries[row];
            m_rows.push_back({entry.id, entry.title, entry.symbolName});
        }
        endInsertRows();
    }
    const int before = std::exchange(m_selectedRow, history.selectedIndex);
    if (before == m_selectedRow && common == count) return;
    const int from = std::clamp(std::min(before, m_selectedRow), 0, std::max(0, count - 1));
    if (count > 0) Q_EMIT dataChanged(index(from), index(count - 1));
    Q_EMIT selectedRowChanged();
}

void HistoryListModel::restore(int row) {
    if (row < 0 || row >= rowCount() || !m_store.hasActiveProject()) return;
    m_store.restoreHistory(*m_store.activeProjectID(), m_rows[static_cast<std::size_t>(row)].id);
}

int HistoryListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant HistoryListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    const bool isFuture = index.row() > m_selectedRow;
    switch (role) {
        case Qt::DisplayRole:
            return row.title;
        case Qt::AccessibleDescriptionRole:
            return isFuture ? tr("Undone") : QString();
        case symbolNameRole:
            return row.symbolName;
        case isSelectedRole:
            return index.row() == m_selectedRow;
        case isFutureRole:
            return isFuture;
        default:
            return {};
    }
}

} // namespace quillabrae::shell
