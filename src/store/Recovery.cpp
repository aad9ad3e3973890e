// SPDX-License-Identifier: GPL-3.0-or-later
// The recovery file, and the work that the window's close button sets aside beside it.
#include "persistence/FileError.h"
#include "persistence/RecoverySession.h"
#include "platform/Clock.h"
#include "store/Attempt.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <new>
#include <utility>

namespace quillabrae::store {

namespace RecoveryPreferences = persistence::RecoveryPreferences;

namespace {

/// The number of the title of a project named `base`: 1 for the bare name, 0 for another name or
/// one that nobody would count up to.
int titleNumber(const QString& title, const QString& base) {
    constexpr int highestNumber = 1'000'000'000;
    if (title == base) return 1;
    if (!title.startsWith(base + QLatin1Char(' '))) return 0;
    const QStringView rest = QStringView(title).sliced(base.size() + 1);
    const bool isWhole =
        std::ranges::all_of(rest, [](QChar letter) { return letter >= u'0' && letter <= u'9'; });
    const int number = isWhole ? rest.toInt() : 0;
    return number <= highestNumber ? number : 0;
}

/// Whether two sessions differ in nothing but when they were saved.
bool saysTheSame(const persistence::PaintAutosaveSession& a, persistence::PaintAutosaveSession b) {
    b.savedAt = a.savedAt;
    return a == b;
}

} // namespace

persistence::PaintAutosaveSession ProjectStore::currentSession() const {
    const auto& preferences = m_environment.preferences;
    persistence::PaintAutosaveSession session;
    session.projects = m_openProjects;
    // What a dialog only tries is nobody's work yet.
    for (model::PaintProject& project : session.projects) {
        if (const model::PaintProject* original = previewOriginal(project.id)) project = *original;
    }
    if (activeIndex())
        session.activeProjectID = m_activeProjectID;
    else if (!m_openProjects.empty())
        session.activeProjectID = m_openProjects.front().id;
    session.savedProjectFingerprints = m_savedProjectFingerprints;
    if (RecoveryPreferences::keepsHistory(preferences))
        session.histories =
            persistence::recoveryHistories(m_histories, m_openProjects, m_savedProjectFingerprints,
                                           RecoveryPreferences::historyEntryLimit(preferences),
                                           persistence::maximumPayloadByteCount);
    session.savedAt = m_environment.clock.now();
    return session;
}

void ProjectStore::persistAutosavedSession() {
    if (!isPersistent()) return;
    if (m_autosaveHolds > 0)
        m_isAutosaveDue = true;
    else
        writeAutosavedSession();
}

void ProjectStore::writeAutosavedSession() {
    try {
        persistence::PaintAutosaveSession session = currentSession();
        // A window that is activated or a tab that is chosen again changes nothing worth a write.
        if (m_writtenSession && saysTheSame(*m_writtenSession, session) &&
            QFile::exists(m_recoveryFolder.file()))
            return;
        m_writtenSession.reset();
        m_recoveryFolder.save(session);
        m_writtenSession = std::move(session);
        noteRecoveryFault(QString());
    } catch (const persistence::FileError& error) {
        // Work goes on; the file of the last write that succeeded stands.
        noteRecoveryFault(error.description());
    } catch (const std::bad_alloc&) {
        noteRecoveryFault(tr("There is not enough memory"));
    }
}

void ProjectStore::noteRecoveryFault(const QString& fault) {
    m_recoveryFault = fault;
    if (m_recoveryFault.isEmpty() == m_reportedRecoveryFault.isEmpty()) return;
    // The command under way has something to say as well, before or after this; the last word is
    // what the user reads.
    QMetaObject::invokeMethod(this, &ProjectStore::reportRecoveryFault, Qt::QueuedConnection);
}

void ProjectStore::reportRecoveryFault() {
    if (m_recoveryFault.isEmpty() == m_reportedRecoveryFault.isEmpty()) return;
    m_reportedRecoveryFault = m_recoveryFault;
    setStatusMessage(m_recoveryFault.isEmpty()
                         ? tr("Recovery is being kept again")
                         : tr("Recovery is not being kept: %1").arg(m_recoveryFault));
}

void ProjectStore::restoreAutosavedSession() {
    if (!isPersistent() || !RecoveryPreferences::restoresOnLaunch(m_environment.preferences))
        return;
    const auto session = m_recoveryFolder.restore();
    if (session && !session->projects.empty()) adoptSession(*session);
}

void ProjectStore::adoptSession(const persistence::PaintAutosaveSession& session) {
    const auto& preferences = m_environment.preferences;
    const bool keepsHistory = RecoveryPreferences::keepsHistory(preferences);
    const int limit = RecoveryPreferences::historyEntryLimit(preferences);
    for (const model::PaintProject& project : session.projects) {
        if (indexOf(project.id)) continue;
        std::optional<model::PaintHistoryState> kept;
        const auto stored = session.histories.constFind(project.id);
        if (keepsHistory && stored != session.histories.constEnd())
            kept = persistence::trimmedForRecovery(*stored, limit);
        m_openProjects.push_back(project);
        m_histories.insert(project.id, persistence::normalizedRecoveredHistory(project, kept));
        const auto fingerprint = session.savedProjectFingerprints.constFind(project.id);
        if (fingerprint != session.savedProjectFingerprints.constEnd())
            m_savedProjectFingerprints.insert(project.id, *fingerprint);
    }
    updateUntitledCountersFromRecoveredProjects();
    Q_EMIT openProjectsChanged();
    const bool hasActive = session.activeProjectID && indexOf(*session.activeProjectID);
    setActiveProjectID(hasActive ? *session.activeProjectID : session.projects.front().id);
    setStatusMessage(keepsHistory && !session.histories.isEmpty()
                         ? tr("Restored autosaved work and history")
                         : tr("Restored autosaved work"));
}

void ProjectStore::updateUntitledCountersFromRecoveredProjects() {
    for (const model::PaintProject& project : m_openProjects) {
        m_untitledCount = std::max(m_untitledCount, titleNumber(project.title, tr("Untitled")));
        m_pastedProjectCount = std::max(
            m_pastedProjectCount, titleNumber(project.title, QCoreApplication::translate(
                                                                 "PaintProject", "Pasted Image")));
    }
}

void ProjectStore::finishSession() {
    if (!isPersistent()) return;
    persistSettings();
    m_writtenSession.reset();
    m_recoveryFolder.clear();
    m_persistence = Persistence::off;
}

bool ProjectStore::setClosedWorkAside() {
    if (!isPersistent() || m_openProjects.empty()) return false;
    try {
        m_recoveryFolder.setAside(currentSession());
    } catch (const persistence::FileError&) {
        return false;
    }
    Q_EMIT closedWorkChanged();
    return true;
}

bool ProjectStore::hasClosedWork() const {
    return isPersistent() && m_recoveryFolder.hasClosed();
}

bool ProjectStore::reopenClosedWork() {
    if (!isPersistent()) return false;
    const auto session = m_recoveryFolder.takeClosed();
    const bool reopens = session && !session->projects.empty();
    if (reopens) {
        adoptSession(*session);
        // The files that the work came from go once the recovery file holds it.
        m_writtenSession.reset();
        persistAutosavedSession();
    }
    // What could not be read is no longer offered either.
    Q_EMIT closedWorkChanged();
    return reopens;
}

} // namespace quillabrae::store
