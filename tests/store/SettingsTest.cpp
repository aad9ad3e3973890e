// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreTest.h"

#include <QSignalSpy>

#include <algorithm>

namespace quillabrae::store {
namespace {

using Settings = StoreTest;

const QString settingsKey = QStringLiteral("Quillabrae.settings");

TEST_F(Settings, AChangeIsStoredAtOnce) {
    const auto store = makeStore();
    store->editSettings([](model::PaintAppSettings& settings) {
        settings.selectedTool = model::PaintTool::eraser;
        settings.primaryColor = {1.0, 0.5, 0.25, 1.0};
        settings.textFontFamily = QStringLiteral("Serif");
        settings.lastCanvasResizeAnchor = model::CanvasAnchor::bottomRight;
    });
    EXPECT_EQ(makeStore()->settings(), store->settings());
}

TEST_F(Settings, RestoredValuesAreBroughtIntoTheirRanges) {
    preferences.setValue(settingsKey, QByteArray(R"({"brushSize": 900, "shapeOutlineWidth": 2.4,
        "zoomScale": 0.01, "pencilHardness": -5, "textFontSize": 1000})"));
    const auto settings = makeStore()->settings();
    EXPECT_EQ(settings.brushSize, 512.0);
    EXPECT_EQ(settings.shapeOutlineWidth, 2.0);
    EXPECT_EQ(settings.zoomScale, 0.1);
    EXPECT_EQ(settings.pencilHardness, 0.0);
    EXPECT_EQ(settings.textFontSize, 512.0);
    EXPECT_FALSE(preferences.bytes(settingsKey).contains("900"));
}

TEST_F(Settings, AnOlderRecordKeepsWhatItHasAndTakesDefaultsForTheRest) {
    preferences.setValue(settingsKey, QByteArray(R"({"brushSize": 12, "selectedTool": "hand"})"));
    const auto settings = makeStore()->settings();
    EXPECT_EQ(settings.brushSize, 12.0);
    EXPECT_EQ(settings.selectedTool, model::PaintTool::pan);
    EXPECT_EQ(settings.pencilHardness, 100.0);
}

TEST_F(Settings, AnUnreadableRecordGivesTheDefaults) {
    preferences.setValue(settingsKey, QByteArray("{\"brushSize\": "));
    EXPECT_EQ(makeStore()->settings(), model::PaintAppSettings());
}

TEST_F(Settings, AStoreWithoutPersistenceTouchesNothingStored) {
    preferences.setValue(settingsKey, QByteArray(R"({"brushSize": 12})"));
    const auto store = makeStore(Persistence::off);
    EXPECT_EQ(store->settings().brushSize, 5.0);
    store->editSettings([](model::PaintAppSettings& settings) { settings.brushSize = 40; });
    store->rememberRecent(file(QStringLiteral("a.quillabrae")));
    makeProject(*store);
    store->finishSession();
    EXPECT_FALSE(store->setClosedWorkAside());
    EXPECT_FALSE(store->hasClosedWork());
    EXPECT_FALSE(store->reopenClosedWork());
    EXPECT_EQ(preferences.bytes(settingsKey), QByteArray(R"({"brushSize": 12})"));
    EXPECT_FALSE(preferences.value(QStringLiteral("Quillabrae.recents")).isValid());
    EXPECT_FALSE(QDir(paths.applicationSupport).exists());
}

TEST_F(Settings, OutlineWidthsAreWholeNumbersUpTo32) {
    const auto widths = ProjectStore::availableShapeOutlineWidths();
    ASSERT_EQ(widths.size(), 32u);
    EXPECT_EQ(widths.front(), 1.0);
    EXPECT_EQ(widths.back(), 32.0);
}

TEST_F(Settings, TheDefaultFontIsOneOfTheSystems) {
    const QStringList families = ProjectStore::availableTextFontFamilies();
    EXPECT_TRUE(std::ranges::is_sorted(families));
    const QString family = ProjectStore::defaultTextFontFamily();
    EXPECT_TRUE(families.isEmpty() ? family == QStringLiteral("Helvetica")
                                   : families.contains(family));
}

} // namespace
} // namespace quillabrae::store
