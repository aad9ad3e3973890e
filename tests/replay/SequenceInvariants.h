// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintHistory.h"
#include "model/PaintProject.h"

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

namespace quillabrae::replay {

class Session;

/// All open work at one moment. Copies share their pixels.
struct Moment {
    std::vector<model::PaintProject> projects;
    std::optional<QUuid> activeProjectID;
    QHash<QUuid, model::PaintHistoryState> histories;
    /// Whether the canvas shows a shape or a text that can still be changed.
    bool hasDraft = false;

    static Moment of(Session& session);
    /// Null for a project that is not open.
    const model::PaintProject* project(const QUuid& id) const;
    const model::PaintProject* activeProject() const;
};

/// One line of a script, with the work as it was and as it has become.
struct Step {
    const Moment& before;
    QJsonObject line;
    const Moment& after;
    Session& session;

    QString verb() const { return line.value(QStringLiteral("do")).toString(); }
};

/// What must hold after each line of any script. A sentence for each thing that does not; its first
/// word is the rule's name.
QStringList brokenRules(const Step& step);

/// What must hold between the work that the recovery file holds and what a start makes of it.
QStringList brokenByRestart(const Moment& before, const Moment& after);

} // namespace quillabrae::replay
