// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/RecordCoding.h"
#include "persistence/RecoverySession.h"
#include "platform/MemoryPreferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillabrae::persistence {
namespace {

using model::PaintHistoryEntry;
using model::PaintHistoryState;
using model::PaintProject;
using model::PngBytes;
using testing::ElementsAre;

model::PaintLayer layerOf(qsizetype byteCount) {
    model::PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.bitmapPNGData = PngBytes(QByteArray(byteCount, 'p'));
    return layer;
}

PaintProject projectOf(qsizetype byteCount) {
    PaintProject project;
    project.id = QUuid::createUuid();
    project.title = QStringLiteral("Project");
    project.layers = {layerOf(byteCount)};
    project.lastModified = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
    return project;
}

// A history whose entries are named "0", "1" and so on and weigh what `byteCounts` says.
PaintHistoryState historyOf(const std::vector<qsizetype>& byteCounts, int selectedIndex) {
    PaintHistoryState history;
    for (const qsizetype byteCount : byteCounts) {
        const QString title = QString::number(history.entries.size());
        history.entries.push_back({QUuid::createUuid(), title, {}, projectOf(byteCount)});
    }
    history.selectedIndex = selectedIndex;
    return history;
}

PaintHistoryState historyOfCount(int count, int selectedIndex) {
    return historyOf(std::vector<qsizetype>(static_cast<std::size_t>(count), 10), selectedIndex);
}

std::vector<int> titles(const PaintHistoryState& history) {
    std::vector<int> result;
    for (const PaintHistoryEntry& entry : history.entries) result.push_back(entry.title.toInt());
    return result;
}

int selectedTitle(const PaintHistoryState& history) {
    return history.entries.at(static_cast<std::size_t>(history.selectedIndex)).title.toInt();
}

// What is kept of one project's history when entries may come to `budget` bytes.
PaintHistoryState kept(const PaintHistoryState& history, qint64 budget) {
    const PaintProject project = projectOf(100);
    return recoveryHistories({{project.id, history}}, {project}, {}, 100, 100 + budget)
        .value(project.id);
}

TEST(RecoveryPayload, CountsLayersMaskAndFloatingPixels) {
    PaintProject project = projectOf(10);
    project.layers.push_back(layerOf(20));
    project.layers.emplace_back();
    EXPECT_EQ(recoveryPayloadByteCount(project), 30);
    project.pixelSelection = model::PixelSelection{0, 0, 1, 1, PngBytes(QByteArray(5, 'm'))};
    project.floatingSelection =
        model::FloatingPixelSelection{PngBytes(QByteArray(7, 'f')), 1, 1, {}};
    EXPECT_EQ(recoveryPayloadByteCount(project), 42);
    EXPECT_EQ(recoveryPayloadByteCount(historyOf({1, 2, 3}, 0)), 6);
}

TEST(TrimmedForRecovery, AHistoryThatFitsStaysAsItIs) {
    const PaintHistoryState history = historyOfCount(5, 2);
    EXPECT_EQ(trimmedForRecovery(history, 5), history);
    EXPECT_EQ(trimmedForRecovery(history, 50), history);
}

TEST(TrimmedForRecovery, KeepsAWindowWithTheOddEntryOnTheNewerSide) {
    const auto odd = trimmedForRecovery(historyOfCount(11, 5), 5);
    EXPECT_THAT(titles(*odd), ElementsAre(3, 4, 5, 6, 7));
    EXPECT_EQ(selectedTitle(*odd), 5);
    const auto even = trimmedForRecovery(historyOfCount(11, 5), 4);
    EXPECT_THAT(titles(*even), ElementsAre(4, 5, 6, 7));
    EXPECT_EQ(selectedTitle(*even), 5);
}

TEST(TrimmedForRecovery, TheWindowStaysWithinTheHistory) {
    EXPECT_THAT(titles(*trimmedForRecovery(historyOfCount(11, 0), 4)), ElementsAre(0, 1, 2, 3));
    const auto last = trimmedForRecovery(historyOfCount(11, 10), 4);
    EXPECT_THAT(titles(*last), ElementsAre(7, 8, 9, 10));
    EXPECT_EQ(selectedTitle(*last), 10);
    EXPECT_THAT(titles(*trimmedForRecovery(historyOfCount(11, 6), 1)), ElementsAre(6));
}

TEST(TrimmedForRecovery, WhatHasNoSelectedEntryGivesNothing) {
    EXPECT_EQ(trimmedForRecovery({}, 10), std::nullopt);
    EXPECT_EQ(trimmedForRecovery(historyOfCount(3, -1), 10), std::nullopt);
    EXPECT_EQ(trimmedForRecovery(historyOfCount(3, 3), 10), std::nullopt);
    EXPECT_EQ(trimmedForRecovery(historyOfCount(3, 1), 0), std::nullopt);
}

TEST(RecoveryHistories, ALimitBelowTwoKeepsNone) {
    const PaintProject project = projectOf(1);
    const Histories histories{{project.id, historyOfCount(3, 1)}};
    EXPECT_TRUE(recoveryHistories(histories, {project}, {}, 1, 1000).isEmpty());
    EXPECT_EQ(recoveryHistories(histories, {project}, {}, 2, 1000).size(), 1);
}

TEST(RecoveryHistories, AHistoryOfOneEntryIsNotKept) {
    const PaintProject project = projectOf(1);
    const Histories histories{{project.id, historyOfCount(1, 0)}};
    EXPECT_TRUE(recoveryHistories(histories, {project}, {}, 25, 1000).isEmpty());
}

TEST(RecoveryHistories, OnlyHistoriesOfOpenProjectsAreKept) {
    const PaintProject open = projectOf(1);
    const Histories histories{{open.id, historyOfCount(2, 1)},
                              {QUuid::createUuid(), historyOfCount(2, 1)}};
    const Histories result = recoveryHistories(histories, {open}, {}, 25, 1000);
    EXPECT_EQ(result.keys(), QList<QUuid>{open.id});
    EXPECT_EQ(result.value(open.id), histories.value(open.id));
}

TEST(RecoveryHistories, WithinTheBudgetOnlyTheLimitTrims) {
    const PaintProject project = projectOf(1);
    const Histories histories{{project.id, historyOfCount(40, 39)}};
    const Histories result = recoveryHistories(histories, {project}, {}, 25, 10'000);
    EXPECT_EQ(result.value(project.id).entries.size(), 25U);
    EXPECT_EQ(result.value(project.id).selectedIndex, 24);
}

TEST(RecoveryHistories, WhatExactlyMeetsTheBudgetIsKept) {
    EXPECT_THAT(titles(kept(historyOf({10, 10, 10}, 1), 30)), ElementsAre(0, 1, 2));
    EXPECT_THAT(titles(kept(historyOf({10, 10, 10}, 2), 29)), ElementsAre(1, 2));
}

TEST(RecoveryHistories, TheEndFartherFromTheSelectedEntryGoesFirst) {
    const PaintHistoryState atTheEnd = kept(historyOf({10, 10, 10, 10, 10}, 4), 30);
    EXPECT_THAT(titles(atTheEnd), ElementsAre(2, 3, 4));
    EXPECT_EQ(selectedTitle(atTheEnd), 4);
    const PaintHistoryState atTheStart = kept(historyOf({10, 10, 10, 10, 10}, 0), 30);
    EXPECT_THAT(titles(atTheStart), ElementsAre(0, 1, 2));
    EXPECT_EQ(selectedTitle(atTheStart), 0);
}

TEST(RecoveryHistories, InTheMiddleTheHeavierEndGoesAndOfEqualOnesTheFirst) {
    EXPECT_THAT(titles(kept(historyOf({10, 10, 20}, 1), 39)), ElementsAre(0, 1));
    EXPECT_THAT(titles(kept(historyOf({20, 10, 10}, 1), 39)), ElementsAre(1, 2));
    const PaintHistoryState tied = kept(historyOf({10, 10, 10}, 1), 29);
    EXPECT_THAT(titles(tied), ElementsAre(1, 2));
    EXPECT_EQ(selectedTitle(tied), 1);
}

TEST(RecoveryHistories, AHistoryOfTwoEntriesOverTheBudgetGoesWhole) {
    EXPECT_TRUE(kept(historyOf({10, 10}, 1), 19).entries.empty());
    EXPECT_TRUE(kept(historyOf({10, 10, 10}, 1), 19).entries.empty());
}

TEST(RecoveryHistories, TheHistoryOfMostEntriesGivesFirst) {
    const PaintProject a = projectOf(0);
    const PaintProject b = projectOf(0);
    const Histories histories{{a.id, historyOf({100, 100, 100}, 2)},
                              {b.id, historyOf({1, 1, 1, 1}, 3)}};
    const Histories result = recoveryHistories(histories, {a, b}, {}, 25, 303);
    EXPECT_EQ(result.value(a.id).entries.size(), 3U);
    EXPECT_THAT(titles(result.value(b.id)), ElementsAre(1, 2, 3));
}

TEST(RecoveryHistories, OfEqualCountsTheLargerPayloadGivesFirst) {
    const PaintProject a = projectOf(0);
    const PaintProject b = projectOf(0);
    const Histories histories{{a.id, historyOf({1, 1, 1}, 2)}, {b.id, historyOf({2, 2, 2}, 2)}};
    const Histories result = recoveryHistories(histories, {a, b}, {}, 25, 8);
    EXPECT_EQ(result.value(a.id).entries.size(), 3U);
    EXPECT_EQ(result.value(b.id).entries.size(), 2U);
}

TEST(RecoveryHistories, OfEqualPayloadsTheFirstTabGivesFirst) {
    const PaintProject a = projectOf(0);
    const PaintProject b = projectOf(0);
    for (const auto& projects : {std::vector{a, b}, std::vector{b, a}}) {
        const Histories histories{{a.id, historyOf({1, 1, 1}, 2)}, {b.id, historyOf({1, 1, 1}, 2)}};
        const Histories result = recoveryHistories(histories, projects, {}, 25, 5);
        EXPECT_EQ(result.value(projects[0].id).entries.size(), 2U);
        EXPECT_EQ(result.value(projects[1].id).entries.size(), 3U);
    }
}

TEST(RecoveryHistories, FingerprintsCountWithTheirEncodedBytes) {
    const PaintProject project = projectOf(1000);
    const auto fingerprint = model::ProjectFingerprint::of(project);
    const qint64 encodedSize = model::encodedJson(fingerprint->project()).size();
    const Histories histories{{project.id, historyOf({10, 10}, 1)}};
    const Fingerprints fingerprints{{project.id, *fingerprint}};
    const qint64 total = 1000 + encodedSize + 20;
    EXPECT_EQ(recoveryHistories(histories, {project}, fingerprints, 25, total).size(), 1);
    EXPECT_EQ(recoveryHistories(histories, {project}, fingerprints, 25, total - 1).size(), 0);
}

TEST(RecoveryHistories, ProjectsOverTheBudgetLoseAllHistories) {
    const PaintProject project = projectOf(1000);
    const Histories histories{{project.id, historyOfCount(10, 9)}};
    EXPECT_TRUE(recoveryHistories(histories, {project}, {}, 25, 999).isEmpty());
}

TEST(NormalizedRecoveredHistory, WithoutAUsableHistoryThereIsOneEntry) {
    const PaintProject project = projectOf(3);
    for (const std::optional<PaintHistoryState>& history :
         {std::optional<PaintHistoryState>(), std::optional(PaintHistoryState()),
          std::optional(historyOfCount(2, 2)), std::optional(historyOfCount(2, -1))}) {
        const PaintHistoryState state = normalizedRecoveredHistory(project, history);
        ASSERT_EQ(state.entries.size(), 1U);
        EXPECT_EQ(state.selectedIndex, 0);
        EXPECT_EQ(state.entries[0].title, QStringLiteral("Recovered Project"));
        EXPECT_EQ(state.entries[0].symbolName, QStringLiteral("clock.arrow.circlepath"));
        EXPECT_EQ(state.entries[0].project, project);
        EXPECT_FALSE(state.entries[0].id.isNull());
    }
}

TEST(NormalizedRecoveredHistory, EntriesTakeTheProjectsIdentityAndPlace) {
    PaintProject project = projectOf(3);
    project.fileURL = QUrl::fromLocalFile(QStringLiteral("/a/b.quillabrae"));
    const PaintHistoryState history = historyOf({1, 2, 3}, 1);
    const PaintHistoryState state = normalizedRecoveredHistory(project, history);
    ASSERT_EQ(state.entries.size(), 3U);
    EXPECT_EQ(state.selectedIndex, 1);
    for (const PaintHistoryEntry& entry : state.entries) {
        EXPECT_EQ(entry.project.id, project.id);
        EXPECT_EQ(entry.project.fileURL, project.fileURL);
    }
    EXPECT_EQ(state.entries[1].project, project);
    EXPECT_EQ(state.entries[0].project.layers, history.entries[0].project.layers);
    EXPECT_EQ(state.entries[2].id, history.entries[2].id);
}

TEST(RecoveryPreferences, AreOnUntilABooleanSaysOtherwise) {
    platform::MemoryPreferences preferences;
    EXPECT_TRUE(RecoveryPreferences::restoresOnLaunch(preferences));
    EXPECT_TRUE(RecoveryPreferences::keepsHistory(preferences));
    for (const QVariant& value :
         {QVariant(0), QVariant(QStringLiteral("no")), QVariant(QByteArray("false"))}) {
        preferences.setValue(QStringLiteral("Quillabrae.restoreRecoveryOnLaunch"), value);
        preferences.setValue(QStringLiteral("Quillabrae.keepRecoveryHistory"), value);
        EXPECT_TRUE(RecoveryPreferences::restoresOnLaunch(preferences));
        EXPECT_TRUE(RecoveryPreferences::keepsHistory(preferences));
    }
    preferences.setValue(QStringLiteral("Quillabrae.restoreRecoveryOnLaunch"), false);
    EXPECT_FALSE(RecoveryPreferences::restoresOnLaunch(preferences));
    EXPECT_TRUE(RecoveryPreferences::keepsHistory(preferences));
    preferences.setValue(QStringLiteral("Quillabrae.keepRecoveryHistory"), false);
    EXPECT_FALSE(RecoveryPreferences::keepsHistory(preferences));
}

TEST(RecoveryPreferences, TheEntryLimitIsOneOfFour) {
    platform::MemoryPreferences preferences;
    EXPECT_EQ(RecoveryPreferences::historyEntryLimit(preferences), 25);
    const auto limitOf = [&](const QVariant& stored) {
        preferences.setValue(QStringLiteral("Quillabrae.recoveryHistoryEntryLimit"), stored);
        return RecoveryPreferences::historyEntryLimit(preferences);
    };
    for (const int limit : {10, 25, 50, 100}) EXPECT_EQ(limitOf(limit), limit);
    for (const QVariant& other : {QVariant(30), QVariant(0), QVariant(-10), QVariant(1000),
                                  QVariant(QStringLiteral("many")), QVariant(50.0)})
        EXPECT_EQ(limitOf(other), 25);
}

} // namespace
} // namespace quillabrae::persistence
