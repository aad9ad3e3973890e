// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintHistory.h"
#include "model/PaintProject.h"
#include "model/ProjectFingerprint.h"

#include <QDateTime>
#include <QHash>
#include <QUuid>

#include <optional>
#include <vector>

namespace quillabrae::platform {
class Preferences;
}

namespace quillabrae::persistence {

using Histories = QHash<QUuid, model::PaintHistoryState>;
using Fingerprints = QHash<QUuid, model::ProjectFingerprint>;

/// The record of all open work that brings it back after a crash.
struct PaintAutosaveSession {
    std::vector<model::PaintProject> projects;
    std::optional<QUuid> activeProjectID;
    Fingerprints savedProjectFingerprints;
    Histories histories;
    QDateTime savedAt;

    friend bool operator==(const PaintAutosaveSession&, const PaintAutosaveSession&) = default;
};

/// The most bytes of pixels that a session's projects and histories come to, before histories are
/// trimmed.
constexpr qint64 maximumPayloadByteCount = 201'326'592;

/// What the user wants of recovery.
namespace RecoveryPreferences {
bool restoresOnLaunch(const platform::Preferences& preferences);
bool keepsHistory(const platform::Preferences& preferences);
/// 10, 25, 50 or 100.
int historyEntryLimit(const platform::Preferences& preferences);
} // namespace RecoveryPreferences

/// Bytes of PNG in a record: its layers, its mask and its floating pixels.
qint64 recoveryPayloadByteCount(const model::PaintProject& project);
qint64 recoveryPayloadByteCount(const model::PaintHistoryState& history);

/// At most `maxEntries` entries around the selected one, the odd one on the newer side. Nothing for
/// an empty history, a bad index or a limit below 1.
std::optional<model::PaintHistoryState> trimmedForRecovery(const model::PaintHistoryState& history,
                                                           int maxEntries);

/// The histories that fit a session: trimmed to the limit, then entry by entry until projects,
/// fingerprints and histories come to at most `maximumPayload` bytes. Projects are never dropped.
Histories recoveryHistories(const Histories& histories,
                            const std::vector<model::PaintProject>& projects,
                            const Fingerprints& savedProjectFingerprints, int maxEntriesPerProject,
                            qint64 maximumPayload);

/// The history that a restored project starts with.
model::PaintHistoryState normalizedRecoveredHistory(
    const model::PaintProject& project, const std::optional<model::PaintHistoryState>& history);

} // namespace quillabrae::persistence
