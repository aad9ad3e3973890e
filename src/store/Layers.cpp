// SPDX-License-Identifier: GPL-3.0-or-later
// What changes the list of layers. A layer's lock guards its pixels, not its place in the list.
#include "raster/LayerRasterService.h"
#include "store/Attempt.h"
#include "store/FileLocation.h"
#include "store/Intake.h"
#include "store/ProjectLayers.h"
#include "store/ProjectStore.h"
#include "store/SelectionState.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quillabrae::store {
namespace {

std::optional<std::size_t> selectedLayerIndex(const model::PaintProject& project) {
    return layerIndex(project, project.selectedLayerID);
}

/// Puts the layer where `index` is now and selects it.
void insertSelected(model::PaintProject& project, std::size_t index, model::PaintLayer layer) {
    project.selectedLayerID = layer.id;
    project.layers.insert(project.layers.begin() + static_cast<std::ptrdiff_t>(index),
                          std::move(layer));
}

void removeLayer(model::PaintProject& project, std::size_t index) {
    project.layers.erase(project.layers.begin() + static_cast<std::ptrdiff_t>(index));
}

/// Merges the layer at `index` into the one beneath, at the look that the two have together.
void mergeDown(model::PaintProject& project, std::size_t index) {
    const model::PaintLayer upper = project.layers[index];
    model::PaintLayer& lower = project.layers[index - 1];
    raster::LayerRasterService::flatten(upper, lower, project.canvasWidth, project.canvasHeight);
    lower.name = QStringLiteral("%1 + %2").arg(lower.name, upper.name);
    project.selectedLayerID = lower.id;
    project.floatingSelection.reset();
    removeLayer(project, index);
}

} // namespace

void ProjectStore::addLayer() {
    return Attempt::run(*this, tr("New layer"), [&]() {
        model::PaintProject* project = projectToEdit();
        if (!project) return;
        const std::size_t count = project->layers.size();
        insertSelected(*project, count, emptyLayer(tr("Layer %1").arg(count + 1)));
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("New Layer"), QStringLiteral("plus.square"));
    });
}

void ProjectStore::deleteSelectedLayer() {
    return Attempt::run(*this, tr("Delete layer"), [&]() {
        model::PaintProject* project = projectToEdit();
        if (!project || project->layers.size() < 2) return;
        const auto index = selectedLayerIndex(*project);
        if (!index) return;
        removeLayer(*project, *index);
        project->selectedLayerID = project->layers[*index == 0 ? 0 : *index - 1].id;
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Delete Layer"), QStringLiteral("trash"));
    });
}

void ProjectStore::duplicateSelectedLayer() {
    return Attempt::run(*this, tr("Duplicate layer"), [&]() {
        model::PaintProject* project = projectToEdit();
        if (!project) return;
        const auto index = selectedLayerIndex(*project);
        if (!index) return;
        model::PaintLayer copy = project->layers[*index];
        copy.id = QUuid::createUuid();
        copy.name = tr("%1 Copy").arg(copy.name);
        insertSelected(*project, *index + 1, std::move(copy));
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Duplicate Layer"), QStringLiteral("doc.on.doc"));
    });
}

void ProjectStore::moveSelectedLayer(int offset) {
    return Attempt::run(*this, tr("Move layer"), [&]() {
        model::PaintProject* project = projectToEdit();
        if (!project) return;
        const auto index = selectedLayerIndex(*project);
        if (!index) return;
        const auto target = static_cast<qint64>(*index) + offset;
        if (target < 0 || target >= static_cast<qint64>(project->layers.size())) return;
        std::swap(project->layers[*index], project->layers[static_cast<std::size_t>(target)]);
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Move Layer"), QStringLiteral("arrow.up.arrow.down"));
    });
}

void ProjectStore::flattenLayerDown(QUuid layerID) {
    return Attempt::run(*this, tr("Flatten"), [&]() {
        model::PaintProject* project = projectToEdit();
        if (!project) return;
        const auto index = layerIndex(*project, layerID);
        if (!index || *index == 0) return;
        if (project->floatingSelection && !putDownFloatingSelection(*project))
            return setStatusMessage(tr("Flatten failed: selected pixels could not be dropped"),
                                    StatusKind::failure);
        mergeDown(*project, *index);
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Flatten Down"), QStringLiteral("square.stack.3d.down.right"));
    });
}

void ProjectStore::importLayerFromFile() {
    return Attempt::run(*this, tr("Import"), [&]() {
        if (!hasActiveProject()) return;
        const auto url = m_environment.panels.chooseImageToImport();
        if (!url) return;
        const QUrl location = fileLocation(*url);
        const auto [image, failure] = imageInFile(location);
        if (failure == IntakeFailure::beyondLimits)
            return setStatusMessage(unreadableImage(), StatusKind::failure);
        // The active project may be another one after the question.
        model::PaintProject* project = projectToEdit();
        if (!image || !project) return;
        const QString fileName = location.fileName();
        model::PaintLayer layer = emptyLayer(QFileInfo(fileName).completeBaseName());
        raster::LayerRasterService::bakeImage(
            {QUuid::createUuid(), image->pngData, 0.0, 0.0, image->width, image->height}, layer,
            project->canvasWidth, project->canvasHeight);
        insertSelected(*project, project->layers.size(), std::move(layer));
        const QUuid id = finishEdit(*project);
        setStatusMessage(tr("Imported %1").arg(fileName));
        recordHistory(id, tr("Import Layer"), QStringLiteral("square.and.arrow.down"));
    });
}

std::optional<model::PaintLayer> ProjectStore::selectedLayerForProperties() const {
    const model::PaintProject* project = activeProject();
    const model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
    return layer ? std::optional(*layer) : std::nullopt;
}

void ProjectStore::applySelectedLayerProperties(const LayerPropertiesDialogResult& result) {
    return Attempt::run(*this, tr("Layer properties"), [&]() {
        model::PaintProject* project = projectToEdit();
        model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
        if (!layer) return;
        layer->name = result.name.isEmpty() ? tr("Layer") : result.name;
        layer->opacity = std::clamp(result.opacity, 0.0, 1.0);
        layer->isVisible = result.isVisible;
        layer->isLocked = result.isLocked;
        const QUuid id = finishEdit(*project);
        setStatusMessage(tr("Layer properties updated"));
        recordHistory(id, tr("Layer Properties"), QStringLiteral("wand.and.sparkles"));
    });
}

} // namespace quillabrae::store
