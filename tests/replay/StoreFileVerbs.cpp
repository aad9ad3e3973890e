// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of the store that touch files: open and save, recents, recovery.
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QJsonArray>

namespace quillabrae::replay {
namespace {

QJsonValue idOf(const std::optional<model::PaintProject>& project) {
    return project ? toJson(project->id) : QJsonValue();
}

QUrl fileAt(Session& session, const QJsonValue& value, const char* what) {
    return QUrl::fromLocalFile(session.resolvedPath(textFrom(value, QLatin1StringView(what))));
}

QJsonValue saveActiveProject(Session& session, const Arguments&) {
    session.store().saveActiveProject();
    return {};
}

QJsonValue saveActiveProjectAs(Session& session, const Arguments&) {
    session.store().saveActiveProjectAs();
    return {};
}

QJsonValue saveProject(Session& session, const Arguments& arguments) {
    const QJsonObject to = objectFrom(arguments.value("to"), QStringLiteral("to"));
    const QString format = to.value(QStringLiteral("format")).toString();
    const auto saveFormat = persistence::saveFormatFromRawText(format);
    if (!saveFormat) throw ScriptError(QStringLiteral("unknown format \"%1\"").arg(format));
    const int index = arguments.integer("at");
    if (index < 0) throw ScriptError(QStringLiteral("\"at\" must not be negative"));
    return session.store().saveProject(
        static_cast<std::size_t>(index),
        {fileAt(session, to.value(QStringLiteral("url")), "url"), *saveFormat});
}

QJsonValue saveProjectForClose(Session& session, const Arguments& arguments) {
    return session.store().saveProjectForClose(
        session.projectID(arguments.value("projectID"), QStringLiteral("projectID")));
}

QJsonValue shouldTerminate(Session& session, const Arguments&) {
    return session.store().shouldTerminateAfterHandlingUnsavedProjects();
}

QJsonValue openProject(Session& session, const Arguments& arguments) {
    return idOf(session.store().openProject(fileAt(session, arguments.value("at"), "at")));
}

QJsonValue openProjectFromPanel(Session& session, const Arguments&) {
    return idOf(session.store().openProjectFromPanel());
}

QJsonValue openFile(Session& session, const Arguments& arguments) {
    return idOf(session.store().openFile(fileAt(session, arguments.value("url"), "url")));
}

QJsonValue rememberRecent(Session& session, const Arguments& arguments) {
    session.store().rememberRecent(fileAt(session, arguments.value("value"), "value"));
    return {};
}

/// A recent is named by its file or by the record itself.
QJsonValue removeRecent(Session& session, const Arguments& arguments) {
    const QJsonValue value = arguments.value("value");
    const QJsonValue file =
        value.isObject() ? value.toObject().value(QStringLiteral("url")) : value;
    session.store().removeRecent({QString(), fileAt(session, file, "value"), QDateTime()});
    return {};
}

QJsonValue saveRecents(Session& session, const Arguments&) {
    session.store().saveRecents();
    return {};
}

QJsonValue persistAutosavedSession(Session& session, const Arguments&) {
    session.store().persistAutosavedSession();
    return {};
}

/// In whole seconds, as files keep it.
QJsonObject storedForm(const model::PaintProject& project) {
    QJsonObject record = toJson(project).toObject();
    record.insert(QStringLiteral("lastModified"), project.lastModified.toString(Qt::ISODate));
    return record;
}

QJsonArray entriesOf(const model::PaintHistoryState& history) {
    QJsonArray entries;
    for (const model::PaintHistoryEntry& entry : history.entries)
        entries.append(QJsonObject{{QStringLiteral("id"), toJson(entry.id)},
                                   {QStringLiteral("title"), entry.title},
                                   {QStringLiteral("symbolName"), entry.symbolName},
                                   {QStringLiteral("project"), storedForm(entry.project)}});
    return entries;
}

/// All that the next start after a kill is to have, every field of it.
QJsonValue recoverable(Session& session, const Arguments&) {
    const store::ProjectStore& store = session.store();
    QJsonArray tabs;
    for (const model::PaintProject& project : store.openProjects()) {
        const model::PaintHistoryState& history = store.history(project.id);
        tabs.append(QJsonObject{{QStringLiteral("project"), storedForm(project)},
                                {QStringLiteral("isUnsaved"), store.isProjectUnsaved(project)},
                                {QStringLiteral("entries"), entriesOf(history)},
                                {QStringLiteral("selectedIndex"), history.selectedIndex}});
    }
    const auto active = store.activeProjectID();
    return QJsonObject{
        {QStringLiteral("tabs"), tabs},
        {QStringLiteral("activeProjectID"), active ? toJson(*active) : QJsonValue()}};
}

QJsonValue setClosedWorkAside(Session& session, const Arguments&) {
    return session.store().setClosedWorkAside();
}

QJsonValue hasClosedWork(Session& session, const Arguments&) {
    return session.store().hasClosedWork();
}

QJsonValue reopenClosedWork(Session& session, const Arguments&) {
    return session.store().reopenClosedWork();
}

constexpr Verb verbs[] = {
    {"store.saveActiveProject", "", saveActiveProject},
    {"store.saveActiveProjectAs", "", saveActiveProjectAs},
    {"store.saveProject", "at to", saveProject},
    {"store.saveProjectForClose", "projectID", saveProjectForClose},
    {"store.shouldTerminateAfterHandlingUnsavedProjects", "", shouldTerminate},
    {"store.openProject", "at", openProject},
    {"store.openProjectFromPanel", "", openProjectFromPanel},
    {"store.openFile", "url", openFile},
    {"store.rememberRecent", "value", rememberRecent},
    {"store.removeRecent", "value", removeRecent},
    {"store.saveRecents", "", saveRecents},
    {"store.persistAutosavedSession", "", persistAutosavedSession},
    {"recoverable", "", recoverable},
    {"store.setClosedWorkAside", "", setClosedWorkAside},
    {"store.hasClosedWork", "", hasClosedWork},
    {"store.reopenClosedWork", "", reopenClosedWork},
};

} // namespace

VerbTable storeFileVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
