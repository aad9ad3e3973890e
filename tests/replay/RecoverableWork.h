// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QSize>
#include <QString>

#include <vector>

/// What the verb `recoverable` tells, in a form in which a start after a kill can be compared with
/// the program that was killed.
namespace quillabrae::replay {

/// A tab, as a start after a kill is to have it: a history of a single entry is made anew.
struct RecoverableTab {
    QJsonObject project;
    bool isUnsaved = false;
    std::vector<QJsonObject> entries;
    int selected = 0;

    QSize canvas() const;

    friend bool operator==(const RecoverableTab&, const RecoverableTab&) = default;
};

struct RecoverableWork {
    std::vector<RecoverableTab> tabs;
    QJsonValue active;

    /// From what the verb answers.
    static RecoverableWork from(const QJsonObject& recoverable);
    /// Null when no tab is active.
    const RecoverableTab* activeTab() const;
    /// Whether both have the same tabs, and the same entries up to the selected ones.
    bool hasSamePast(const RecoverableWork& other) const;
    /// What another work has that this one has not, and the other way round, for a message.
    QString differenceFrom(const RecoverableWork& other) const;

    friend bool operator==(const RecoverableWork&, const RecoverableWork&) = default;
};

/// What a command may do to a tab.
enum class Change {
    /// Keeps the entries up to the selected one, and adds one or two.
    edit,
    /// The same, after a draft under way has added one of its own.
    editAfterDraft,
    /// Changes only the place in the history.
    move,
    /// Changes only the place in the user's files, and always does.
    save,
};

/// Whether one whole command that does such a change to the active tab, or opens or closes one,
/// leads from one work to another.
bool leadsOn(const RecoverableWork& from, const RecoverableWork& to, Change change);

} // namespace quillabrae::replay
