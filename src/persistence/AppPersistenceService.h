// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintAppSettings.h"
#include "model/RecentProject.h"
#include "persistence/RecoverySession.h"

#include <QString>

#include <optional>
#include <vector>

namespace quillabrae::platform {
class Preferences;
}

/// The settings record, the recent projects and the recovery file on disk.
namespace quillabrae::persistence::AppPersistenceService {

/// The stored settings, unclamped; defaults for what is absent or unreadable. Never fails.
model::PaintAppSettings loadSettings(const platform::Preferences& preferences);
void saveSettings(platform::Preferences& preferences, const model::PaintAppSettings& settings);

/// The stored recents; empty when absent or unreadable.
std::vector<model::RecentProject> loadRecents(const platform::Preferences& preferences,
                                              const QString& key);
void saveRecents(platform::Preferences& preferences, const QString& key,
                 const std::vector<model::RecentProject>& recents);

/// The session in a file; nothing when there is none or it cannot be read.
std::optional<PaintAutosaveSession> loadAutosavedSession(const QString& file);

/// The session in a file that is to be written again. One that is there but cannot be read is set
/// aside in its folder as "Unreadable.quillabraesession", or the first of "Unreadable 2..." and so
/// on that is free, so that no later write destroys it; it then gives way to the session that it
/// replaced, where that is still beside it.
std::optional<PaintAutosaveSession> recoverAutosavedSession(const QString& file);

/// Writes the session as a stream, whole or not at all, as a rewritten file (RewrittenFile.h);
/// complete on return. Throws FileError.
void saveAutosavedSession(const PaintAutosaveSession& session, const QString& file);

/// Removes the file and what its rewriting has left beside it; a failure is ignored.
void clearAutosavedSession(const QString& file);

} // namespace quillabrae::persistence::AppPersistenceService
