// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>
#include <QUuid>

#include <vector>

namespace quillabrae::model {
struct PaintHistoryState;
}

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// The active project's history as rows, oldest first. An edit changes only the rows at the end,
/// so following one costs the same in a long history as in a short one.
class HistoryListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { symbolNameRole = Qt::UserRole, isSelectedRole, isFutureRole };

    explicit HistoryListModel(store::ProjectStore& store, QObject* parent = nullptr);

    /// The row that the project stands at; -1 without a history.
    int selectedRow() const { return m_selectedRow; }
    void restore(int row);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

Q_SIGNALS:
    void selectedRowChanged();

private:
    struct Row {
        QUuid id;
        QString title;
        QString symbolName;
    };

    void follow();
    /// How many rows from the first on are the history's entries still.
    int commonRows(const model::PaintHistoryState& history) const;

    store::ProjectStore& m_store;
    std::vector<Row> m_rows;
    int m_selectedRow = -1;
};

} // namespace quillabrae::shell
