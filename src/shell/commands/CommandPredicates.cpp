// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/CommandTable.h"
#include "store/ProjectStore.h"

namespace quillabrae::shell::CommandPredicates {

bool always(const store::ProjectStore&) {
    return true;
}

bool never(const store::ProjectStore&) {
    return false;
}

bool hasActiveProject(const store::ProjectStore& store) {
    return store.hasActiveProject();
}

bool canUndo(const store::ProjectStore& store) {
    const model::PaintProject* project = store.activeProject();
    return project != nullptr && store.history(project->id).canUndo();
}

bool canRedo(const store::ProjectStore& store) {
    const model::PaintProject* project = store.activeProject();
    return project != nullptr && store.history(project->id).canRedo();
}

bool canDropSelection(const store::ProjectStore& store) {
    return store.canDropSelection();
}

bool canDeleteLayer(const store::ProjectStore& store) {
    const model::PaintProject* project = store.activeProject();
    return project != nullptr && project->layers.size() > 1;
}

bool canMergeLayerDown(const store::ProjectStore& store) {
    const model::PaintProject* project = store.activeProject();
    const model::PaintLayer* layer = project != nullptr ? project->selectedLayer() : nullptr;
    return layer != nullptr && layer != &project->layers.front();
}

bool canRepeatLastAction(const store::ProjectStore& store) {
    return store.hasActiveProject() && store.lastRepeatableAction().has_value();
}

bool canGenerativeFill(const store::ProjectStore& store) {
    return store.canGenerativeFill();
}

} // namespace quillabrae::shell::CommandPredicates
