// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"
#include "platform/MemoryPreferences.h"
#include "support/RandomRecords.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillabrae::persistence {
namespace {

namespace Service = AppPersistenceService;
using model::PaintAppSettings;
using tests::RandomRecords;

const QString settingsKey = QStringLiteral("Quillabrae.settings");
const QString recentsKey = QStringLiteral("Quillabrae.recents");

TEST(StoredSettings, AreDefaultsWhenAbsentOrUnreadable) {
    platform::MemoryPreferences preferences;
    EXPECT_EQ(Service::loadSettings(preferences), PaintAppSettings());
    for (const char* bytes :
         {"", "nonsense", "[]", R"({"brushSize": "5"})", R"({"brushSize": 7)"}) {
        preferences.setValue(settingsKey, QByteArray(bytes));
        EXPECT_EQ(Service::loadSettings(preferences), PaintAppSettings()) << bytes;
    }
}

TEST(StoredSettings, ComeBackAsTheyWereSaved) {
    platform::MemoryPreferences preferences;
    const PaintAppSettings settings = RandomRecords(31).settings();
    Service::saveSettings(preferences, settings);
    EXPECT_EQ(preferences.value(settingsKey).typeId(), QMetaType::QByteArray);
    EXPECT_EQ(Service::loadSettings(preferences), settings);
}

TEST(StoredSettings, OfAnOlderVersionTakeDefaultsForWhatIsMissing) {
    platform::MemoryPreferences preferences;
    preferences.setValue(settingsKey, QByteArray(R"({"brushSize": 33, "selectedTool": "hand"})"));
    PaintAppSettings expected;
    expected.brushSize = 33.0;
    expected.selectedTool = model::PaintTool::pan;
    EXPECT_EQ(Service::loadSettings(preferences), expected);
}

TEST(StoredSettings, AreLoadedUnclamped) {
    platform::MemoryPreferences preferences;
    preferences.setValue(
        settingsKey,
        QByteArray(R"({"brushSize": 900, "shapeOutlineWidth": 2.4, "zoomScale": 0.01})"));
    const PaintAppSettings loaded = Service::loadSettings(preferences);
    EXPECT_EQ(loaded.brushSize, 900.0);
    EXPECT_EQ(loaded.clamped().brushSize, 512.0);
    EXPECT_EQ(loaded.clamped().shapeOutlineWidth, 2.0);
    EXPECT_EQ(loaded.clamped().zoomScale, 0.1);
}

TEST(StoredSettings, ThatCannotBeWrittenLeaveTheStoredOnes) {
    platform::MemoryPreferences preferences;
    PaintAppSettings settings = RandomRecords(32).settings();
    Service::saveSettings(preferences, settings);
    const PaintAppSettings before = settings;
    settings.brushSize = std::numeric_limits<double>::quiet_NaN();
    Service::saveSettings(preferences, settings);
    EXPECT_EQ(Service::loadSettings(preferences), before);
}

TEST(StoredRecents, ComeBackAsTheyWereSaved) {
    platform::MemoryPreferences preferences;
    RandomRecords random(33);
    const std::vector<model::RecentProject> recents{random.recent(), random.recent(),
                                                    random.recent()};
    EXPECT_TRUE(Service::loadRecents(preferences, recentsKey).empty());
    Service::saveRecents(preferences, recentsKey, recents);
    EXPECT_EQ(Service::loadRecents(preferences, recentsKey), recents);
    Service::saveRecents(preferences, recentsKey, {});
    EXPECT_EQ(preferences.bytes(recentsKey), QByteArray("[]"));
    EXPECT_TRUE(Service::loadRecents(preferences, recentsKey).empty());
}

TEST(StoredRecents, OneThatIsUnreadableMakesTheListEmpty) {
    platform::MemoryPreferences preferences;
    preferences.setValue(recentsKey, QByteArray(R"([{"title": "a", "url": "file:///a"}])"));
    EXPECT_TRUE(Service::loadRecents(preferences, recentsKey).empty());
}

} // namespace
} // namespace quillabrae::persistence
