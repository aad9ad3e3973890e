// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RecoveryFolder.h"

#include "persistence/AppPersistenceService.h"
#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace quillabrae::persistence {
namespace {

// More programs than can run at once.
constexpr int highestNumber = 1000;

// The same project and what belongs to it, under another identifier.
void renameProject(PaintAutosaveSession& session, model::PaintProject& project) {
    const QUuid former = std::exchange(project.id, QUuid::createUuid());
    const auto history = session.histories.constFind(former);
    if (history != session.histories.constEnd())
        session.histories.insert(project.id, normalizedRecoveredHistory(project, *history));
    const auto saved = session.savedProjectFingerprints.constFind(former);
    if (saved == session.savedProjectFingerprints.constEnd()) return;
    model::PaintProject savedProject = saved->project();
    savedProject.id = project.id;
    if (const auto fingerprint = model::ProjectFingerprint::of(savedProject))
        session.savedProjectFingerprints.insert(project.id, *fingerprint);
}

} // namespace

RecoveryFolder::RecoveryFolder(QString folder, platform::LockTaker takeLock)
    : m_folder(std::move(folder)), m_takeLock(std::move(takeLock)) {}

QString RecoveryFolder::file() {
    claimNumber();
    return path(Work::open, m_own.number);
}

std::optional<PaintAutosaveSession> RecoveryFolder::restore() {
    claimNumber();
    auto session = AppPersistenceService::recoverAutosavedSession(file());
    const auto others = taken(Work::open);
    if (!others) return session;
    return session ? joined(*std::move(session), *others) : others;
}

void RecoveryFolder::save(const PaintAutosaveSession& session) {
    AppPersistenceService::saveAutosavedSession(session, file());
    removeTakenOver();
}

void RecoveryFolder::clear() {
    AppPersistenceService::clearAutosavedSession(file());
    removeTakenOver();
}

void RecoveryFolder::setAside(const PaintAutosaveSession& session) {
    claimNumber();
    const QString closed = path(Work::closed, m_own.number);
    AppPersistenceService::saveAutosavedSession(session, closed);
    m_takenOver.removeAll(closed);
}

bool RecoveryFolder::hasClosed() const {
    return std::ranges::any_of(numbersOf(Work::closed),
                               [this](int number) { return isOwn(number) || isFree(number); });
}

std::optional<PaintAutosaveSession> RecoveryFolder::takeClosed() {
    claimNumber();
    return taken(Work::closed);
}

QString RecoveryFolder::nameOf(Work work, int number) {
    const QString base = work == Work::open ? QStringLiteral("Recovery") : QStringLiteral("Closed");
    const QString extension = QStringLiteral(".quillabraesession");
    return number == 1 ? base + extension
                       : QStringLiteral("%1 %2").arg(base).arg(number) + extension;
}

// 0 for the name of another file.
int RecoveryFolder::numberOf(Work work, const QString& name) {
    static const QRegularExpression numbered(
        QStringLiteral(R"(^\w+(?: ([1-9]\d{0,2}))?\.quillabraesession$)"));
    const auto match = numbered.match(name);
    if (!match.hasMatch()) return 0;
    const int number = match.hasCaptured(1) ? match.captured(1).toInt() : 1;
    return name == nameOf(work, number) ? number : 0;
}

QString RecoveryFolder::path(Work work, int number) const {
    return m_folder + u'/' + nameOf(work, number);
}

RecoveryFolder::Claim RecoveryFolder::claimed(int number) const {
    const QString name = nameOf(Work::open, number);
    return {number, m_takeLock(m_folder + QStringLiteral("/.%1.lock").arg(name))};
}

void RecoveryFolder::claimNumber() {
    // Where there was no lock to be had before, there may be one now.
    if (m_own.lock.isHeld()) return;
    try {
        platform::makePrivateFolder(m_folder);
    } catch (const platform::FileOperationError&) {
        // Then there is neither a lock nor, for now, a file.
    }
    for (int number = 1; number <= highestNumber; ++number) {
        m_own = claimed(number);
        if (m_own.lock.state() != platform::FileLock::State::refused) return;
    }
}

bool RecoveryFolder::isOwn(int number) const {
    return number == m_own.number ||
           std::ranges::find(m_others, number, &Claim::number) != m_others.end();
}

// Without locks there is no telling whether other numbers' programs still run.
bool RecoveryFolder::isFree(int number) const {
    using enum platform::FileLock::State;
    const auto state = claimed(number).lock.state();
    return state == held || (state == unavailable && number == 1 && m_own.number == 0);
}

bool RecoveryFolder::claimOther(int number) {
    if (isOwn(number)) return true;
    if (!m_own.lock.isHeld()) return false;
    Claim claim = claimed(number);
    if (!claim.lock.isHeld()) return false;
    m_others.push_back(std::move(claim));
    return true;
}

std::vector<int> RecoveryFolder::numbersOf(Work work) const {
    std::vector<int> numbers;
    for (const QString& name : platform::systemFileOperations().entries(m_folder)) {
        const int number = numberOf(work, name);
        if (number > 0 && !m_takenOver.contains(path(work, number))) numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

// This program's own recovery file is never taken over: it is what others are taken over into.
std::optional<PaintAutosaveSession> RecoveryFolder::taken(Work work) {
    std::optional<PaintAutosaveSession> session;
    for (const int number : numbersOf(work)) {
        const bool isReceiver = work == Work::open && number == m_own.number;
        if (isReceiver || !claimOther(number)) continue;
        const QString file = path(work, number);
        const auto found = AppPersistenceService::recoverAutosavedSession(file);
        if (!found) continue;
        session = session ? joined(*std::move(session), *found) : *found;
        m_takenOver.push_back(file);
    }
    return session;
}

void RecoveryFolder::removeTakenOver() {
    for (const QString& file : m_takenOver) AppPersistenceService::clearAutosavedSession(file);
    m_takenOver.clear();
    m_others.clear();
}

PaintAutosaveSession joined(PaintAutosaveSession session, const PaintAutosaveSession& other) {
    PaintAutosaveSession added = other;
    for (model::PaintProject& project : added.projects) {
        const auto twin = std::ranges::find(session.projects, project.id, &model::PaintProject::id);
        if (twin != session.projects.end()) {
            const bool isSame =
                model::ProjectFingerprint::of(*twin) == model::ProjectFingerprint::of(project);
            if (isSame) continue;
            renameProject(added, project);
        }
        session.projects.push_back(project);
        const auto history = added.histories.constFind(project.id);
        if (history != added.histories.constEnd()) session.histories.insert(project.id, *history);
        const auto saved = added.savedProjectFingerprints.constFind(project.id);
        if (saved != added.savedProjectFingerprints.constEnd())
            session.savedProjectFingerprints.insert(project.id, *saved);
    }
    if (!session.activeProjectID) session.activeProjectID = added.activeProjectID;
    return session;
}

} // namespace quillabrae::persistence
