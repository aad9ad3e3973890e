// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SequenceStep.h"

#include "canvas/CanvasView.h"
#include "raster/DecodeCache.h"
#include "replay/Session.h"

#include <algorithm>

namespace quillabrae::replay {

using model::PaintHistoryState;
using model::PaintLayer;
using model::PaintProject;

Moment Moment::of(Session& session) {
    const store::ProjectStore& store = session.store();
    const canvas::CanvasView& view = session.canvas().view();
    const bool hasDraft =
        view.shapeDraft().activeShapeDraft() || view.textDraft().activeTextDraft();
    Moment moment{store.openProjects(), store.activeProjectID(), {}, hasDraft};
    for (const PaintProject& project : moment.projects)
        moment.histories.insert(project.id, store.history(project.id));
    return moment;
}

const PaintProject* Moment::project(const QUuid& id) const {
    const auto found = std::ranges::find(projects, id, &PaintProject::id);
    return found == projects.end() ? nullptr : &*found;
}

const PaintProject* Moment::activeProject() const {
    return activeProjectID ? project(*activeProjectID) : nullptr;
}

bool Step::isOneOf(std::initializer_list<const char*> verbs) const {
    return std::ranges::any_of(verbs,
                               [&](const char* name) { return verb() == QLatin1StringView(name); });
}

bool Step::isAboutTabs() const {
    return isOneOf(
        {"store.closeProject", "store.openProject", "store.restoreHistory", "service.answer"});
}

bool Step::mayClickByKey() const {
    return verb() == QLatin1StringView("canvas.key") &&
           line.value(QStringLiteral("key")) == QStringLiteral("space");
}

bool Step::hasRecorded(const QUuid& id) const {
    const PaintHistoryState now = after.histories.value(id);
    return !now.entries.empty() && !isIn(before.histories.value(id), now.entries.back());
}

bool Step::endsInItsEntry(const QUuid& id) const {
    const bool goesOn =
        verb() == QLatin1StringView("canvas.press") || (mayClickByKey() && before.hasDraft);
    return hasRecorded(id) && !goesOn;
}

const PaintLayer* layerOf(const PaintProject& project, const QUuid& id) {
    const auto found = std::ranges::find(project.layers, id, &PaintLayer::id);
    return found == project.layers.end() ? nullptr : &*found;
}

bool isCommittable(const PaintProject& project) {
    const auto& floating = project.floatingSelection;
    return floating && layerOf(project, floating->layerID) != nullptr &&
           !raster::decodedImage(floating->pngData).isNull();
}

bool isIn(const PaintHistoryState& history, const model::PaintHistoryEntry& entry) {
    return std::ranges::find(history.entries, entry.id, &model::PaintHistoryEntry::id) !=
           history.entries.end();
}

} // namespace quillabrae::replay
