// SPDX-License-Identifier: GPL-3.0-or-later
// What the dialogs' live effects have in common, and the command that runs the last one again.
#include "store/AdjustmentPreviews.h"

#include <variant>

namespace quillabrae::store {
namespace {

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

void ProjectStore::restoreOriginal(const model::PaintProject& original,
                                   const model::PaintLayer* tried) {
    const auto index = indexOf(original.id);
    if (!index) return;
    model::PaintProject& project = m_openProjects[*index];
    project = original;
    model::PaintLayer* layer = tried ? project.selectedLayer() : nullptr;
    if (layer) *layer = *tried;
    Q_EMIT projectChanged(original.id);
    setActiveProjectID(original.id);
}

model::PaintLayer* ProjectStore::AdjustmentPreviews::layerToAdjust(ProjectStore& store) {
    model::PaintProject* project = store.projectToEdit();
    model::PaintLayer* layer = project ? project->selectedLayer() : nullptr;
    if (!layer || !layer->isLocked) return layer;
    store.setStatusMessage(ProjectStore::tr("Selected layer is locked"));
    return nullptr;
}

void ProjectStore::AdjustmentPreviews::show(ProjectStore& store, const model::PaintProject& project,
                                            AdjustmentRun run, const QString& previewStatus) {
    Q_EMIT store.projectChanged(project.id);
    if (run == AdjustmentRun::preview) store.setStatusMessage(previewStatus);
}

void ProjectStore::AdjustmentPreviews::finish(ProjectStore& store, model::PaintProject& project,
                                              const Report& report) {
    store.m_lastRepeatableAction = report.action;
    const QUuid id = store.finishEdit(project);
    store.setStatusMessage(report.status);
    store.recordHistory(id, report.historyTitle, report.symbolName);
}

const model::PaintProject* ProjectStore::previewOriginal(QUuid id) const {
    for (const auto& original : {&m_previews->align.original, &m_previews->colorRemoval.original}) {
        if (*original && (*original)->id == id) return &**original;
    }
    return nullptr;
}

void ProjectStore::repeatLastAction() {
    if (!m_lastRepeatableAction) return setStatusMessage(tr("No action to repeat"));
    namespace Actions = RepeatableActions;
    // A copy: the command stores itself again.
    const RepeatablePaintAction action = *m_lastRepeatableAction;
    std::visit(
        Overloaded{
            [this](const Actions::FlipLayer& flip) { flipSelectedLayer(flip.direction); },
            [this](const Actions::AlignObject& align) {
                applyAlignObject(align.action, AdjustmentRun::recorded);
            },
            [this](const Actions::ColorRemoval& removal) {
                applyColorRemoval(removal.settings, AdjustmentRun::recorded);
            },
            [this](const Actions::RotateZoom& turn) { rotateZoomSelectedLayer(turn.result); },
            [this](const Actions::ResizeImage& resize) { resizeActiveImage(resize.result); },
            [this](const Actions::ResizeCanvas& resize) { resizeActiveCanvas(resize.result); },
            [this](const Actions::GenerativeFill& fill) {
                performGenerativeFill(fill.request, [](const std::optional<QString>&) {});
            },
            [this](const Actions::InvertImage&) { invertActiveImage(); },
        },
        action);
}

} // namespace quillabrae::store
