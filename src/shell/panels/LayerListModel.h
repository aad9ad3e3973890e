// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "shell/panels/LayerThumbnails.h"

#include <QAbstractListModel>
#include <QSize>

#include <optional>
#include <vector>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// The active project's layers as rows, the top of the stack first. The name can be edited, the
/// check mark is the layer's visibility, and both are written as edits with their history entries.
class LayerListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { isLockedRole = Qt::UserRole, opacityRole, canvasSizeRole };

    explicit LayerListModel(store::ProjectStore& store, QObject* parent = nullptr);

    /// How large the pictures are, in device pixels; without a size there are none.
    void setThumbnailRoom(QSize room);

    std::optional<QUuid> layerID(int row) const;
    std::optional<int> rowOf(const QUuid& layerID) const;
    /// The row of the layer that commands work on.
    std::optional<int> selectedRow() const;
    /// Makes the row's layer the one that commands work on; not an edit.
    void select(int row);
    void toggleVisibility(int row);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    void selectedRowChanged();

private:
    const model::PaintLayer& layer(int row) const;
    void follow();
    bool hasSameIDs(const std::vector<model::PaintLayer>& layers) const;
    void replaceAll(const std::vector<model::PaintLayer>& layers);
    void showChanges(const std::vector<model::PaintLayer>& layers);
    bool setVisible(const QUuid& id, bool isVisible);
    bool rename(int row, const QString& name);

    store::ProjectStore& m_store;
    mutable LayerThumbnails m_thumbnails;
    QSize m_room;
    /// As in the project: bottom first.
    std::vector<model::PaintLayer> m_layers;
    QSizeF m_canvas;
    QUuid m_projectID;
    QUuid m_selectedLayerID;
};

} // namespace quillabrae::shell
