// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/panels/LayerReorder.h"
#include "shell/panels/Spring.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QListView>
#include <QPointer>

#include <functional>
#include <optional>

namespace quillabrae::shell {

class LayerListModel;
class LayerRow;
struct LayerRowParts;

/// The layer stack as a list. A press selects; the eye shows and hides; a drag moves the layer
/// through the stack, its row under the pointer and its future place outlined, while the other rows
/// spring aside. A double click on the name edits it, elsewhere it opens the layer's properties.
class LayerList final : public QListView {
    Q_OBJECT

public:
    LayerList(store::ProjectStore& store, std::function<void()> configureLayer,
              QWidget* parent = nullptr);

    bool isReordering() const { return m_reorder.draggingLayerID().has_value(); }

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

protected Q_SLOTS:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void showSelection();
    void measureThumbnails();
    void editName(int row);
    bool startsDrag(QPoint at) const;
    void dragTo(int y);
    void endDrag();
    void enterRowAt(int y);
    /// The rows' places by layer, to spring from.
    QHash<QUuid, int> restingPlaces() const;
    void springFrom(const QHash<QUuid, int>& places);
    void advanceSprings();
    LayerRowParts partsOf(const QModelIndex& index) const;
    int rowHeight() const;
    int rowTop(int row) const;
    void paintRow(QPainter& painter, int row, int top) const;
    void paintTarget(QPainter& painter, const QRect& row) const;

    store::ProjectStore& m_store;
    std::function<void()> m_configureLayer;
    LayerListModel* m_model;
    LayerRow* m_rowLook;
    LayerReorder m_reorder;
    QHash<QUuid, Spring> m_springs;
    QBasicTimer m_frames;
    QElapsedTimer m_clock;
    std::optional<QPoint> m_pressedAt;
    /// The row whose eye is held down.
    std::optional<int> m_pressedEye;
    /// The pointer's height over the top of the row that it drags, and the height it is at.
    int m_grip = 0;
    int m_pointerY = 0;
    QPointer<QWidget> m_focusBeforeEditing;
};

} // namespace quillabrae::shell
