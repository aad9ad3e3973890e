// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/RecoverySession.h"
#include "platform/FileLock.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace quillabrae::persistence {

/// The autosave folder, as one of the programs that keep their files in it.
///
/// Each running program has a number that no other running one has, and two files of its own:
/// "Recovery.quillabraesession" for what is open and "Closed.quillabraesession" for what it set
/// aside, or with another number than 1 "Recovery 2.quillabraesession" and so on. A lock in the
/// folder says that a number's program runs. Files whose programs do not run are everybody's.
class RecoveryFolder {
public:
    /// Nothing is read, locked or made yet.
    RecoveryFolder(QString folder, platform::LockTaker takeLock);

    /// This program's recovery file.
    QString file();
    /// What the last program left in this program's recovery file, joined by what other programs
    /// that no longer run left in theirs. Nothing when there is none. A file that cannot be read is
    /// set aside.
    std::optional<PaintAutosaveSession> restore();
    /// Writes this program's recovery file, whole or not at all; complete on return. What was found
    /// in other files is this program's own from then on, and they are removed. Throws FileError.
    void save(const PaintAutosaveSession& session);
    /// Removes this program's recovery file, and those whose work it has taken over.
    void clear();

    /// Keeps work that is closed beside what is open; what this program kept before is replaced.
    /// Throws FileError.
    void setAside(const PaintAutosaveSession& session);
    /// Whether `takeClosed` would find a file.
    bool hasClosed() const;
    /// The work that this program has set aside, joined by that of programs that no longer run.
    /// The files stay until the next `save` or `clear`.
    std::optional<PaintAutosaveSession> takeClosed();

private:
    enum class Work { open, closed };
    struct Claim {
        int number = 0;
        platform::FileLock lock;
    };

    static QString nameOf(Work work, int number);
    static int numberOf(Work work, const QString& name);
    QString path(Work work, int number) const;
    Claim claimed(int number) const;
    void claimNumber();
    bool isOwn(int number) const;
    bool isFree(int number) const;
    /// Whether the files of that number are this program's to read; holds on to the number.
    bool claimOther(int number);
    /// The numbers of the files of one kind whose work has not been taken over, lowest first.
    std::vector<int> numbersOf(Work work) const;
    std::optional<PaintAutosaveSession> taken(Work work);
    void removeTakenOver();

    QString m_folder;
    platform::LockTaker m_takeLock;
    Claim m_own;
    /// Numbers of programs that no longer run, and the files of theirs and of this program's whose
    /// work is open here but not yet in this program's recovery file.
    std::vector<Claim> m_others;
    QStringList m_takenOver;
};

/// A session with the projects of another one behind its own, with their histories and
/// fingerprints. A project that is in both counts once where it is the same, and else the other
/// one's gets a new identifier.
PaintAutosaveSession joined(PaintAutosaveSession session, const PaintAutosaveSession& other);

} // namespace quillabrae::persistence
