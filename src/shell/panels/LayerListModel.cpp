// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayerListModel.h"

#include "store/ProjectStore.h"

#include <algorithm>

namespace quillabrae::shell {

LayerListModel::LayerListModel(store::ProjectStore& store, QObject* parent)
    : QAbstractListModel(parent), m_store(store) {
    using store::ProjectStore;
    connect(&m_store, &ProjectStore::activeProjectChanged, this, &LayerListModel::follow);
    connect(&m_store, &ProjectStore::openProjectsChanged, this, &LayerListModel::follow);
    connect(&m_store, &ProjectStore::projectChanged, this, [this](const QUuid& id) {
        if (id == m_store.activeProjectID()) follow();
    });
    connect(&m_thumbnails, &LayerThumbnails::pictureChanged, this, [this](const QUuid& id) {
        if (const auto row = rowOf(id))
            Q_EMIT dataChanged(index(*row), index(*row), {Qt::DecorationRole});
    });
    follow();
}

void LayerListModel::setThumbnailRoom(QSize room) {
    if (room == m_room) return;
    m_room = room;
    if (!m_layers.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::DecorationRole});
}

void LayerListModel::follow() {
    static const std::vector<model::PaintLayer> none;
    const model::PaintProject* project = m_store.activeProject();
    const auto& layers = project != nullptr ? project->layers : none;
    const QUuid selected = project != nullptr ? project->selectedLayerID : QUuid();
    const QUuid projectID = project != nullptr ? project->id : QUuid();
    const QSizeF canvas =
        project != nullptr ? QSizeF(project->canvasWidth, project->canvasHeight) : QSizeF();
    const bool isSame = projectID == m_projectID && canvas == m_canvas && hasSameIDs(layers);
    const bool isReselected = selected != m_selectedLayerID;
    m_projectID = projectID;
    m_canvas = canvas;
    m_selectedLayerID = selected;
    if (isSame)
        showChanges(layers);
    else
        replaceAll(layers);
    if (!isSame || isReselected) Q_EMIT selectedRowChanged();
}

bool LayerListModel::hasSameIDs(const std::vector<model::PaintLayer>& layers) const {
    return std::ranges::equal(layers, m_layers, {}, &model::PaintLayer::id, &model::PaintLayer::id);
}

void LayerListModel::replaceAll(const std::vector<model::PaintLayer>& layers) {
    beginResetModel();
    m_layers = layers;
    QSet<QUuid> ids;
    for (const model::PaintLayer& layer : m_layers) ids.insert(layer.id);
    m_thumbnails.keepOnly(ids);
    endResetModel();
}

void LayerListModel::showChanges(const std::vector<model::PaintLayer>& layers) {
    for (std::size_t position = 0; position < layers.size(); ++position) {
        if (m_layers[position] == layers[position]) continue;
        m_layers[position] = layers[position];
        const QModelIndex changed = index(rowCount() - 1 - static_cast<int>(position));
        Q_EMIT dataChanged(changed, changed);
    }
}

const model::PaintLayer& LayerListModel::layer(int row) const {
    return m_layers[m_layers.size() - 1 - static_cast<std::size_t>(row)];
}

std::optional<QUuid> LayerListModel::layerID(int row) const {
    if (row < 0 || row >= rowCount()) return std::nullopt;
    return layer(row).id;
}

std::optional<int> LayerListModel::rowOf(const QUuid& layerID) const {
    const auto found = std::ranges::find(m_layers, layerID, &model::PaintLayer::id);
    if (found == m_layers.end()) return std::nullopt;
    return rowCount() - 1 - static_cast<int>(found - m_layers.begin());
}

std::optional<int> LayerListModel::selectedRow() const {
    return rowOf(m_selectedLayerID);
}

void LayerListModel::select(int row) {
    const auto id = layerID(row);
    if (!id) return;
    m_store.editActiveProject([&](model::PaintProject& project) { project.selectedLayerID = *id; });
}

void LayerListModel::toggleVisibility(int row) {
    if (const auto id = layerID(row)) setVisible(*id, !layer(row).isVisible);
}

int LayerListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_layers.size());
}

QVariant LayerListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const model::PaintLayer& shown = layer(index.row());
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return shown.name;
        case Qt::CheckStateRole:
            return shown.isVisible ? Qt::Checked : Qt::Unchecked;
        case Qt::DecorationRole:
            return m_room.isEmpty() ? QImage() : m_thumbnails.picture(shown, m_canvas, m_room);
        case Qt::AccessibleDescriptionRole:
            return tr("Visible: %1%2, opacity %3 %")
                .arg(shown.isVisible ? tr("yes") : tr("no"),
                     shown.isLocked ? tr(", Locked") : QString())
                .arg(qRound(shown.opacity * 100.0));
        case isLockedRole:
            return shown.isLocked;
        case opacityRole:
            return shown.opacity;
        case canvasSizeRole:
            return m_canvas;
        default:
            return {};
    }
}

bool LayerListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
    if (role == Qt::CheckStateRole)
        return setVisible(layer(index.row()).id, value.toInt() == Qt::Checked);
    return role == Qt::EditRole && rename(index.row(), value.toString());
}

bool LayerListModel::setVisible(const QUuid& id, bool isVisible) {
    const bool isEdited = m_store.editActiveProject([&](model::PaintProject& project) {
        const auto found = std::ranges::find(project.layers, id, &model::PaintLayer::id);
        if (found == project.layers.end()) return;
        found->isVisible = isVisible;
        project.lastModified = QDateTime::currentDateTimeUtc();
    });
    if (!isEdited) return false;
    m_store.recordHistory(*m_store.activeProjectID(), tr("Layer Visibility"),
                          QStringLiteral("eye"));
    return true;
}

bool LayerListModel::rename(int row, const QString& name) {
    if (name == layer(row).name) return false;
    select(row);
    const model::PaintLayer& renamed = layer(row);
    m_store.applySelectedLayerProperties({.name = name,
                                          .opacity = renamed.opacity,
                                          .isVisible = renamed.isVisible,
                                          .isLocked = renamed.isLocked});
    return true;
}

Qt::ItemFlags LayerListModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsUserCheckable |
           Qt::ItemNeverHasChildren;
}

} // namespace quillabrae::shell
