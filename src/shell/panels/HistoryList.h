// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QIcon>
#include <QListView>
#include <QStyledItemDelegate>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class HistoryListModel;

/// Draws a step of the history: its symbol and its title, faint when it is undone.
class HistoryRow final : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int height = 26;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// To be called when the palette has changed.
    void forgetIcons() { m_icons.clear(); }

private:
    mutable QHash<QString, QIcon> m_icons;
};

/// The steps of the active project; a press brings the project back to one of them. The step that
/// the project stands at is marked and kept in sight.
class HistoryList final : public QListView {
    Q_OBJECT

public:
    explicit HistoryList(store::ProjectStore& store, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    void showSelection();

    HistoryListModel* m_model;
    HistoryRow* m_rowLook;
    int m_pressedRow = -1;
};

} // namespace quillabrae::shell
