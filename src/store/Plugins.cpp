// SPDX-License-Identifier: GPL-3.0-or-later
// The effects of plugins, run on the selected layer.
#include "effects/PluginEffectService.h"
#include "store/Attempt.h"
#include "store/ProjectStore.h"
#include "store/SelectionState.h"

namespace quillabrae::store {

bool ProjectStore::applyPlugin(const effects::QuillabraePlugin& plugin) {
    return Attempt::run(*this, plugin.title, [&]() -> bool {
        model::PaintProject* project = projectToEdit();
        model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
        if (!layer) {
            setStatusMessage(tr("Open a project to run %1").arg(title(plugin)));
            return false;
        }
        if (layer->isLocked) {
            setStatusMessage(tr("Selected layer is locked"));
            return false;
        }
        const bool putDown = putDownFloatingSelection(*project);
        if (!effects::PluginEffectService::apply(plugin.effect, *layer, project->canvasWidth,
                                                 project->canvasHeight)) {
            if (putDown) finishEdit(*project);
            setStatusMessage(tr("%1 could not process this layer").arg(title(plugin)));
            return false;
        }
        const QUuid id = finishEdit(*project);
        recordHistory(id, title(plugin), plugin.symbolName);
        setStatusMessage(tr("Applied %1").arg(title(plugin)));
        return true;
    });
}

} // namespace quillabrae::store
