// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintHistory.h"
#include "model/PaintProject.h"

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <initializer_list>
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
    bool isOneOf(std::initializer_list<const char*> verbs) const;
    /// Whether its line is about another project than the active one, or about many.
    bool isAboutTabs() const;
    /// Whether a key presses a tool, which lets go at once where it only clicks.
    bool mayClickByKey() const;
    /// Whether the project has a new last entry. An edit that changed nothing records nothing,
    /// though what could be redone is gone.
    bool hasRecorded(const QUuid& id) const;
    /// Whether its last deed was to record. A press can commit a draft first and go on.
    bool endsInItsEntry(const QUuid& id) const;
};

/// Null for a layer that is not there.
const model::PaintLayer* layerOf(const model::PaintProject& project, const QUuid& id);
/// Whether floating pixels can be put down.
bool isCommittable(const model::PaintProject& project);
bool isIn(const model::PaintHistoryState& history, const model::PaintHistoryEntry& entry);

} // namespace quillabrae::replay
