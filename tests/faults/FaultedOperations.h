// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QRegularExpression>
#include <QString>

#include <map>
#include <ostream>
#include <string>
#include <vector>

/// What the editor writes, as scripts for quillabrae-replay, and how to tell what came of it.
namespace quillabrae::faults {

/// Who makes the system calls: the toolkit takes up a read or write that was interrupted, and not
/// every other call.
enum class Writer { ours, toolkit };

/// When what a kill leaves behind goes.
enum class Litter { goesAtTheNextWrite, goesInTime };

struct Operation {
    std::string name;
    /// The folder below the home that it writes to, and in which calls go wrong.
    QString folder;
    /// What was there before: a script for each start of the editor in the same home.
    QList<QByteArray> before;
    /// The lines that write.
    QByteArray lines;
    /// What the answers hold, before the reason, when it failed; empty where nothing is said.
    QByteArray failure;
    bool isReasonTold = true;
    /// The paths in the folder that a kill may leave.
    QRegularExpression temporary;
    Litter litter = Litter::goesAtTheNextWrite;
    Writer writer = Writer::ours;
    /// Whether doing it twice is as doing it once.
    bool isRepeatable = true;
};

std::vector<Operation> operations();

inline void PrintTo(const Operation& operation, std::ostream* stream) {
    *stream << operation.name;
}

/// Files by their paths in a folder, each with what tells which one it is and that it is whole, and
/// among documents the folders too. Moments and identifiers, which differ from run to run, do not
/// count, in names as in contents; neither do the lock and the spare of the recovery file, nor
/// preferences that say nothing.
using Contents = std::map<std::string, std::string>;
Contents contentsOf(const QString& folder);

} // namespace quillabrae::faults
