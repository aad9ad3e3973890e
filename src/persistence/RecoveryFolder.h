// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/RecoverySession.h"
#include "platform/FileLock.h"

#include <QString>

#include <optional>
#include <vector>

namespace quillabrae::persistence {

/// The autosave folder, as one of the programs that keep their recovery files in it.
///
/// Each running program has a file of its own: "Recovery.quillabraesession", or the first of
/// "Recovery 2.quillabraesession" and so on that no other running program has. A lock beside the
/// file says that its program runs. Files whose programs do not run are everybody's to restore.
class RecoveryFolder {
public:
    /// Nothing is read, locked or made yet.
    RecoveryFolder(QString folder, platform::LockTaker takeLock);

    /// This program's file.
    const QString& file();
    /// What the last program left in this program's file, joined by what other programs that no
    /// longer run left in theirs. Nothing when there is none. A file that cannot be read is set
    /// aside.
    std::optional<PaintAutosaveSession> restore();
    /// Writes this program's file, whole or not at all; complete on return. What `restore` found in
    /// other files is this program's own from then on. Throws FileError.
    void save(const PaintAutosaveSession& session);
    /// Removes this program's file, and those that it has restored.
    void clear();

private:
    struct Claim {
        QString file;
        platform::FileLock lock;
    };

    Claim claimed(int number) const;
    void claimFile();
    std::vector<int> numbersOfOthers() const;
    void removeTakenOver();

    QString m_folder;
    platform::LockTaker m_takeLock;
    int m_number = 0;
    Claim m_own;
    /// The files of programs that no longer run, restored but not yet in this program's file.
    std::vector<Claim> m_takenOver;
};

/// A session with the projects of another one behind its own, with their histories and
/// fingerprints. A project that is in both counts once where it is the same, and else the other
/// one's gets a new identifier.
PaintAutosaveSession joined(PaintAutosaveSession session, const PaintAutosaveSession& other);

} // namespace quillabrae::persistence
