// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/StateFields.h"

#include "replay/CanvasState.h"
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/SettingFields.h"

#include <QJsonArray>
#include <QStringList>

namespace quillabrae::replay {
namespace {

QJsonValue projects(Session& session) {
    QJsonArray list;
    for (const model::PaintProject& project : session.store().openProjects()) {
        QJsonObject record = toJson(project).toObject();
        record.insert(QStringLiteral("history"), toJson(session.store().history(project.id)));
        record.insert(QStringLiteral("isUnsaved"), session.store().isProjectUnsaved(project));
        list.append(record);
    }
    return list;
}

QJsonValue recents(Session& session) {
    QJsonArray list;
    for (const model::RecentProject& recent : session.store().recents())
        list.append(toJson(recent));
    return list;
}

QJsonValue activeProjectID(Session& session) {
    const auto id = session.store().activeProjectID();
    return id ? toJson(*id) : QJsonValue();
}

QJsonValue canvasViewportSize(Session& session) {
    const QSizeF size = session.store().canvasViewportSize();
    return QJsonArray{size.width(), size.height()};
}

QJsonValue canvasCursorPosition(Session& session) {
    const auto position = session.store().canvasCursorPosition();
    return position ? QJsonValue(QJsonArray{position->x, position->y}) : QJsonValue();
}

QJsonValue usage(Session& session) {
    QJsonArray list;
    for (const auto& [event, data] : session.usage().events) {
        QJsonObject told;
        for (auto entry = data.cbegin(); entry != data.cend(); ++entry)
            told.insert(entry.key(), entry.value());
        list.append(QJsonObject{{QStringLiteral("name"), services::eventName(event)},
                                {QStringLiteral("data"), told}});
    }
    return list;
}

struct StateField {
    const char* name;
    QJsonValue (*read)(Session&);
};

constexpr StateField stateFields[] = {
    {"projects", projects},
    {"activeProjectID", activeProjectID},
    {"statusMessage", [](Session& session) { return QJsonValue(session.store().statusMessage()); }},
    {"recents", recents},
    {"canvasViewportSize", canvasViewportSize},
    {"canvasCursorPosition", canvasCursorPosition},
    {"zoomToFitRequestID",
     [](Session& session) { return toJson(session.store().zoomToFitRequestID()); }},
    {"usage", usage},
    {"canvas", [](Session& session) { return QJsonValue(canvasState(session)); }},
    {"hasClosedWork", [](Session& session) { return QJsonValue(session.store().hasClosedWork()); }},
};

std::optional<QJsonValue> fieldNamed(Session& session, const QString& name) {
    for (const StateField& field : stateFields) {
        if (name == QLatin1StringView(field.name)) return field.read(session);
    }
    for (const SettingField& field : settingFields()) {
        if (name == QLatin1StringView(field.name)) return field.read(session.store().settings());
    }
    return std::nullopt;
}

std::optional<QJsonValue> memberOf(const QJsonValue& value, const QString& name) {
    if (value.isObject() && value.toObject().contains(name)) return value.toObject().value(name);
    if (!value.isArray()) return std::nullopt;
    const QJsonArray list = value.toArray();
    if (name == QLatin1StringView("count")) return QJsonValue(list.size());
    bool isIndex = false;
    const int index = name.toInt(&isIndex);
    if (!isIndex || index < 0 || index >= list.size()) return std::nullopt;
    return list.at(index);
}

} // namespace

QJsonObject stateOf(Session& session) {
    QJsonObject state;
    for (const StateField& field : stateFields)
        state.insert(QLatin1StringView(field.name), field.read(session));
    for (const SettingField& field : settingFields())
        state.insert(QLatin1StringView(field.name), field.read(session.store().settings()));
    return state;
}

QJsonValue stateAt(Session& session, const QString& path) {
    const QStringList names = path.split(QLatin1Char('.'));
    const bool isResult = names.first() == QLatin1StringView("result");
    auto value = isResult ? session.lastResult : fieldNamed(session, names.first());
    for (qsizetype i = 1; value && i < names.size(); ++i) value = memberOf(*value, names.at(i));
    if (!value) throw ScriptError(QStringLiteral("the state has no \"%1\"").arg(path));
    return *value;
}

} // namespace quillabrae::replay
