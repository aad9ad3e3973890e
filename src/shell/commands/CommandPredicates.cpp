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

} // namespace quillabrae::shell::CommandPredicates
