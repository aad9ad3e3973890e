// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayerReorder.h"

#include "store/ProjectLayers.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quillabrae::shell {
namespace {

/// Takes the layer at `from` to `to`; those between close up.
void moveLayer(std::vector<model::PaintLayer>& layers, std::size_t from, std::size_t to) {
    const auto at = [&layers](std::size_t index) {
        return layers.begin() + static_cast<std::ptrdiff_t>(index);
    };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to + 1));
    else
        std::rotate(at(to), at(from), at(from + 1));
}

} // namespace

void LayerReorder::start(const QUuid& layerID) {
    const model::PaintProject* project = m_store.activeProject();
    if (project == nullptr) return;
    m_draggingLayerID = layerID;
    m_projectID = project->id;
    m_order.clear();
    for (const model::PaintLayer& layer : project->layers) m_order.push_back(layer.id);
}

bool LayerReorder::isInActiveProject() const {
    return m_draggingLayerID && m_store.activeProjectID() == m_projectID;
}

bool LayerReorder::dropEntered(const QUuid& targetLayerID) {
    if (!isInActiveProject() || targetLayerID == *m_draggingLayerID) return false;
    const model::PaintProject& project = *m_store.activeProject();
    const auto from = store::layerIndex(project, *m_draggingLayerID);
    const auto to = store::layerIndex(project, targetLayerID);
    if (!from || !to) return false;
    return m_store.editActiveProject(
        [&](model::PaintProject& edited) { moveLayer(edited.layers, *from, *to); });
}

void LayerReorder::performDrop() {
    const bool isHere = isInActiveProject();
    m_draggingLayerID.reset();
    if (!isHere) return;
    m_store.editActiveProject([](model::PaintProject& project) {
        project.lastModified = QDateTime::currentDateTimeUtc();
    });
    m_store.recordHistory(m_projectID, QCoreApplication::translate("LayerReorder", "Move Layer"),
                          QStringLiteral("arrow.up.arrow.down"));
}

void LayerReorder::cancel() {
    const bool isHere = isInActiveProject();
    m_draggingLayerID.reset();
    if (!isHere) return;
    const auto rank = [this](const model::PaintLayer& layer) {
        return std::ranges::find(m_order, layer.id) - m_order.begin();
    };
    m_store.editActiveProject(
        [&](model::PaintProject& project) { std::ranges::stable_sort(project.layers, {}, rank); });
}

} // namespace quillabrae::shell
