// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RecoveryFolder.h"

#include "persistence/AppPersistenceService.h"
#include "platform/FileOperations.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace quillabrae::persistence {
namespace {

// More programs than can run at once.
constexpr int highestNumber = 1000;

QString nameOf(int number) {
    return number == 1 ? QStringLiteral("Recovery.quillabraesession")
                       : QStringLiteral("Recovery %1.quillabraesession").arg(number);
}

// The number of the recovery file of that name; 0 for another file.
int numberOf(const QString& name) {
    static const QRegularExpression numbered(
        QStringLiteral(R"(^Recovery ([1-9]\d{0,2})\.quillabraesession$)"));
    const auto match = numbered.match(name);
    if (match.hasMatch()) return match.captured(1).toInt();
    return name == nameOf(1) ? 1 : 0;
}

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

const QString& RecoveryFolder::file() {
    claimFile();
    return m_own.file;
}

std::optional<PaintAutosaveSession> RecoveryFolder::restore() {
    claimFile();
    auto session = AppPersistenceService::recoverAutosavedSession(m_own.file);
    // Without locks there is no telling whether their programs still run.
    if (!m_own.lock.isHeld()) return session;
    for (const int number : numbersOfOthers()) {
        Claim claim = claimed(number);
        if (!claim.lock.isHeld()) continue;
        const auto other = AppPersistenceService::recoverAutosavedSession(claim.file);
        if (!other) continue;
        session = session ? joined(*std::move(session), *other) : *other;
        m_takenOver.push_back(std::move(claim));
    }
    return session;
}

void RecoveryFolder::save(const PaintAutosaveSession& session) {
    claimFile();
    AppPersistenceService::saveAutosavedSession(session, m_own.file);
    removeTakenOver();
}

void RecoveryFolder::clear() {
    claimFile();
    AppPersistenceService::clearAutosavedSession(m_own.file);
    removeTakenOver();
}

RecoveryFolder::Claim RecoveryFolder::claimed(int number) const {
    const QString name = nameOf(number);
    return {m_folder + u'/' + name, m_takeLock(m_folder + QStringLiteral("/.%1.lock").arg(name))};
}

void RecoveryFolder::claimFile() {
    // Where there was no lock to be had before, there may be one now.
    if (m_own.lock.isHeld()) return;
    try {
        platform::systemFileOperations().makePath(m_folder);
    } catch (const platform::FileOperationError&) {
        // Then there is neither a lock nor, for now, a file.
    }
    for (m_number = 1; m_number <= highestNumber; ++m_number) {
        m_own = claimed(m_number);
        if (m_own.lock.state() != platform::FileLock::State::refused) return;
    }
}

std::vector<int> RecoveryFolder::numbersOfOthers() const {
    std::vector<int> numbers;
    for (const QString& name : platform::systemFileOperations().entries(m_folder)) {
        const int number = numberOf(name);
        if (number > 0 && number != m_number) numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

void RecoveryFolder::removeTakenOver() {
    for (const Claim& claim : m_takenOver) AppPersistenceService::clearAutosavedSession(claim.file);
    m_takenOver.clear();
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
