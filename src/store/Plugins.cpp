// SPDX-License-Identifier: GPL-3.0-or-later
// The effects of plugins, run on the selected layer.
#include "effects/PluginEffectService.h"
#include "store/ProjectStore.h"
#include "store/SelectionState.h"

namespace quillabrae::store {

bool ProjectStore::applyPlugin(const effects::QuillabraePlugin& plugin) {
    model::PaintProject* project = projectToEdit();
    model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
    if (!layer) {
        setStatusMessage(QStringLiteral("Open a project to run %1").arg(plugin.title));
        return false;
    }
    if (layer->isLocked) {
        setStatusMessage(QStringLiteral("Selected layer is locked"));
        return false;
    }
    const bool putDown = putDownFloatingSelection(*project);
    if (!effects::PluginEffectService::apply(plugin.effect, *layer, project->canvasWidth,
                                             project->canvasHeight)) {
        if (putDown) finishEdit(*project);
        setStatusMessage(QStringLiteral("%1 could not process this layer").arg(plugin.title));
        return false;
    }
    const QUuid id = finishEdit(*project);
    recordHistory(id, plugin.title, plugin.symbolName);
    setStatusMessage(QStringLiteral("Applied %1").arg(plugin.title));
    return true;
}

} // namespace quillabrae::store
