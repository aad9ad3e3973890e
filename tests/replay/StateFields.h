// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>

namespace quillabrae::replay {

class Session;

/// The whole published state.
QJsonObject stateOf(Session& session);

/// The value at a path into the state, such as "projects.0.layers.1.name"; "count" is the length of
/// a list, and "result" is what the last line printed. Throws ScriptError for a path that leads
/// nowhere.
QJsonValue stateAt(Session& session, const QString& path);

} // namespace quillabrae::replay
