// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes in the place of the stored settings or of the list of recent projects are read as some
// settings and some list, and what is stored again is read as the same.
#include "FuzzInput.h"
#include "model/PaintAppSettings.h"
#include "persistence/AppPersistenceService.h"
#include "platform/MemoryPreferences.h"

using namespace quillabrae;
namespace Stored = persistence::AppPersistenceService;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString settingsKey = QStringLiteral("Quillabrae.settings");
    const QString recentsKey = QStringLiteral("Quillabrae.recents");
    const QByteArray bytes = fuzz::bytesOf(data, size);
    platform::MemoryPreferences preferences;
    preferences.setValue(settingsKey, bytes);
    preferences.setValue(recentsKey, bytes);

    const model::PaintAppSettings settings = Stored::loadSettings(preferences).clamped();
    fuzz::require(settings.clamped() == settings);
    Stored::saveSettings(preferences, settings);
    fuzz::require(Stored::loadSettings(preferences) == settings);

    const auto recents = Stored::loadRecents(preferences, recentsKey);
    Stored::saveRecents(preferences, recentsKey, recents);
    const QByteArray stored = preferences.bytes(recentsKey);
    Stored::saveRecents(preferences, recentsKey, Stored::loadRecents(preferences, recentsKey));
    fuzz::require(preferences.bytes(recentsKey) == stored);
    return 0;
}
