// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of the store on projects, histories, the view and the settings.
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/ScriptImages.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

QJsonValue idOf(const std::optional<model::PaintProject>& project) {
    return project ? toJson(project->id) : QJsonValue();
}

QUuid id(Session& session, const Arguments& arguments, const char* key) {
    return session.projectID(arguments.value(key), QLatin1StringView(key));
}

QJsonValue createUntitledProject(Session& session, const Arguments& arguments) {
    return toJson(session.store()
                      .createUntitledProject(arguments.number("width"), arguments.number("height"),
                                             arguments.number("resolutionDPI"))
                      .id);
}

QJsonValue createProject(Session& session, const Arguments& arguments) {
    if (arguments.has("fromImageAt"))
        return idOf(session.store().createProject(
            QUrl::fromLocalFile(session.resolvedPath(arguments.text("fromImageAt")))));
    std::optional<QString> source;
    if (arguments.has("analyticsSource")) source = arguments.text("analyticsSource");
    return toJson(session.store()
                      .createProject(pastedImageFrom(session, arguments.value("from")), source)
                      .id);
}

QJsonValue closeProject(Session& session, const Arguments& arguments) {
    session.store().closeProject(id(session, arguments, "id"));
    return {};
}

QJsonValue closeAllProjects(Session& session, const Arguments&) {
    session.store().closeAllProjects();
    return {};
}

QJsonValue closeProjectRequestingSave(Session& session, const Arguments& arguments) {
    return session.store().closeProjectRequestingSave(id(session, arguments, "id"));
}

QJsonValue closeActiveProjectRequestingSave(Session& session, const Arguments&) {
    return session.store().closeActiveProjectRequestingSave();
}

QJsonValue hasUnsavedChanges(Session& session, const Arguments& arguments) {
    return session.store().hasUnsavedChanges(id(session, arguments, "projectID"));
}

QJsonValue projectTitle(Session& session, const Arguments& arguments) {
    return session.store().projectTitle(id(session, arguments, "for"));
}

QJsonValue activeIndex(Session& session, const Arguments&) {
    const auto index = session.store().activeIndex();
    return index ? QJsonValue(static_cast<qint64>(*index)) : QJsonValue();
}

QJsonValue hasActiveProject(Session& session, const Arguments&) {
    return session.store().hasActiveProject();
}

QJsonValue history(Session& session, const Arguments& arguments) {
    return toJson(session.store().history(id(session, arguments, "for")));
}

QJsonValue recordHistory(Session& session, const Arguments& arguments) {
    session.store().recordHistory(id(session, arguments, "projectID"), arguments.text("title"),
                                  arguments.text("symbolName"));
    return {};
}

QJsonValue undo(Session& session, const Arguments& arguments) {
    session.store().undo(id(session, arguments, "projectID"));
    return {};
}

QJsonValue redo(Session& session, const Arguments& arguments) {
    session.store().redo(id(session, arguments, "projectID"));
    return {};
}

/// An entry is named by its id or by its index in the history.
QJsonValue restoreHistory(Session& session, const Arguments& arguments) {
    const QUuid projectID = id(session, arguments, "projectID");
    const QJsonValue entry = arguments.value("entryID");
    if (!entry.isDouble()) {
        session.store().restoreHistory(projectID, QUuid::fromString(arguments.text("entryID")));
        return {};
    }
    const auto& entries = session.store().history(projectID).entries;
    const int index = arguments.integer("entryID");
    if (index < 0 || index >= static_cast<int>(entries.size()))
        throw ScriptError(QStringLiteral("no history entry at index %1").arg(index));
    session.store().restoreHistory(projectID, entries[static_cast<std::size_t>(index)].id);
    return {};
}

QJsonValue togglePixelGrid(Session& session, const Arguments&) {
    session.store().togglePixelGrid();
    return {};
}

QJsonValue zoomIn(Session& session, const Arguments&) {
    session.store().zoomIn();
    return {};
}

QJsonValue zoomOut(Session& session, const Arguments&) {
    session.store().zoomOut();
    return {};
}

QJsonValue performZoomToFitCanvas(Session& session, const Arguments& arguments) {
    return session.store().performZoomToFitCanvas(arguments.boolean("updatesStatus")
                                                      ? store::StatusUpdate::shown
                                                      : store::StatusUpdate::silent);
}

QJsonValue zoomToFitCanvasWhenReady(Session& session, const Arguments& arguments) {
    session.store().zoomToFitCanvasWhenReady(id(session, arguments, "projectID"));
    return {};
}

QJsonValue setCanvasViewportSize(Session& session, const Arguments& arguments) {
    session.store().setCanvasViewportSize(arguments.size("value"));
    return {};
}

QJsonValue setCanvasCursorPosition(Session& session, const Arguments& arguments) {
    if (arguments.value("value").isNull())
        session.store().setCanvasCursorPosition(std::nullopt);
    else
        session.store().setCanvasCursorPosition(arguments.point("value"));
    return {};
}

QJsonValue persistSettings(Session& session, const Arguments&) {
    session.store().persistSettings();
    return {};
}

constexpr Verb verbs[] = {
    {"store.createUntitledProject", "width height resolutionDPI", createUntitledProject},
    {"store.createProject", "from? fromImageAt? analyticsSource?", createProject},
    {"store.closeProject", "id", closeProject},
    {"store.closeAllProjects", "", closeAllProjects},
    {"store.closeProjectRequestingSave", "id", closeProjectRequestingSave},
    {"store.closeActiveProjectRequestingSave", "", closeActiveProjectRequestingSave},
    {"store.hasUnsavedChanges", "projectID", hasUnsavedChanges},
    {"store.projectTitle", "for", projectTitle},
    {"store.activeIndex", "", activeIndex},
    {"store.hasActiveProject", "", hasActiveProject},
    {"store.history", "for", history},
    {"store.recordHistory", "projectID title symbolName", recordHistory},
    {"store.undo", "projectID", undo},
    {"store.redo", "projectID", redo},
    {"store.restoreHistory", "projectID entryID", restoreHistory},
    {"store.togglePixelGrid", "", togglePixelGrid},
    {"store.zoomIn", "", zoomIn},
    {"store.zoomOut", "", zoomOut},
    {"store.performZoomToFitCanvas", "updatesStatus", performZoomToFitCanvas},
    {"store.zoomToFitCanvasWhenReady", "projectID", zoomToFitCanvasWhenReady},
    {"store.setCanvasViewportSize", "value", setCanvasViewportSize},
    {"store.setCanvasCursorPosition", "value", setCanvasCursorPosition},
    {"store.persistSettings", "", persistSettings},
};

} // namespace

VerbTable storeProjectVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
