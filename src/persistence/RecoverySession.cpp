// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RecoverySession.h"

#include "model/RecordCoding.h"
#include "platform/Preferences.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <array>
#include <deque>
#include <numeric>

namespace quillabrae::persistence {
namespace {

/// The context of this file's texts, for translators.
struct RecoverySessionTexts {
    Q_DECLARE_TR_FUNCTIONS(RecoverySessionTexts)
};

using model::PaintHistoryEntry;
using model::PaintHistoryState;
using model::PaintProject;

constexpr std::array<int, 4> historyEntryLimits{10, 25, 50, 100};
constexpr int defaultHistoryEntryLimit = 25;

qint64 byteCount(const std::optional<model::PngBytes>& png) {
    return png ? static_cast<qint64>(png->size()) : 0;
}

bool hasSelectedEntry(const PaintHistoryState& history) {
    return history.selectedIndex >= 0 && history.selectedIndex < std::ssize(history.entries);
}

// A history that is being brought under the budget, with what each of its entries weighs.
class WeighedHistory {
public:
    WeighedHistory(const QUuid& id, const PaintHistoryState& history)
        : m_id(id), m_selectedIndex(history.selectedIndex) {
        for (const PaintHistoryEntry& entry : history.entries) {
            m_entries.push_back({&entry, recoveryPayloadByteCount(entry.project)});
            m_payload += m_entries.back().payload;
        }
    }

    const QUuid& id() const { return m_id; }
    qint64 payload() const { return m_payload; }
    qsizetype entryCount() const { return std::ssize(m_entries); }

    // Takes an entry off the end that is farther from the selected one; of ends equally far off
    // the heavier, and of those equally heavy the oldest.
    void dropAnEntry() {
        const qsizetype before = m_selectedIndex;
        const qsizetype after = entryCount() - 1 - m_selectedIndex;
        const bool dropsNewest =
            before < after ||
            (before == after && m_entries.front().payload < m_entries.back().payload);
        if (dropsNewest) {
            m_payload -= m_entries.back().payload;
            m_entries.pop_back();
        } else {
            m_payload -= m_entries.front().payload;
            m_entries.pop_front();
            --m_selectedIndex;
        }
    }

    PaintHistoryState state() const {
        PaintHistoryState result;
        result.selectedIndex = m_selectedIndex;
        result.entries.reserve(m_entries.size());
        for (const Entry& entry : m_entries) result.entries.push_back(*entry.entry);
        return result;
    }

private:
    struct Entry {
        const PaintHistoryEntry* entry;
        qint64 payload;
    };

    QUuid m_id;
    int m_selectedIndex;
    std::deque<Entry> m_entries;
    qint64 m_payload = 0;
};

// The one with the most entries, of those the one with the largest payload, of those the first.
std::vector<WeighedHistory>::iterator heaviest(std::vector<WeighedHistory>& histories) {
    return std::ranges::max_element(histories, {}, [](const WeighedHistory& history) {
        return std::pair(history.entryCount(), history.payload());
    });
}

void bringUnderBudget(std::vector<WeighedHistory>& histories, qint64 budget) {
    const auto payload = [](qint64 sum, const WeighedHistory& h) { return sum + h.payload(); };
    qint64 total = std::accumulate(histories.begin(), histories.end(), qint64{0}, payload);
    while (total > budget && !histories.empty()) {
        const auto history = heaviest(histories);
        total -= history->payload();
        if (history->entryCount() < 3) {
            histories.erase(history);
        } else {
            history->dropAnEntry();
            total += history->payload();
        }
    }
}

} // namespace

bool RecoveryPreferences::restoresOnLaunch(const platform::Preferences& preferences) {
    return preferences.boolean(QStringLiteral("Quillabrae.restoreRecoveryOnLaunch"), true);
}

bool RecoveryPreferences::keepsHistory(const platform::Preferences& preferences) {
    return preferences.boolean(QStringLiteral("Quillabrae.keepRecoveryHistory"), true);
}

int RecoveryPreferences::historyEntryLimit(const platform::Preferences& preferences) {
    const int limit = preferences.integer(QStringLiteral("Quillabrae.recoveryHistoryEntryLimit"),
                                          defaultHistoryEntryLimit);
    return std::ranges::find(historyEntryLimits, limit) != historyEntryLimits.end()
               ? limit
               : defaultHistoryEntryLimit;
}

qint64 recoveryPayloadByteCount(const PaintProject& project) {
    qint64 sum = 0;
    for (const model::PaintLayer& layer : project.layers) sum += byteCount(layer.bitmapPNGData);
    if (project.pixelSelection) sum += byteCount(project.pixelSelection->maskPNGData);
    if (project.floatingSelection) sum += byteCount(project.floatingSelection->pngData);
    return sum;
}

qint64 recoveryPayloadByteCount(const PaintHistoryState& history) {
    qint64 sum = 0;
    for (const PaintHistoryEntry& entry : history.entries)
        sum += recoveryPayloadByteCount(entry.project);
    return sum;
}

std::optional<PaintHistoryState> trimmedForRecovery(const PaintHistoryState& history,
                                                    int maxEntries) {
    if (!hasSelectedEntry(history) || maxEntries < 1) return std::nullopt;
    const qsizetype count = std::ssize(history.entries);
    if (maxEntries >= count) return history;

    qsizetype start = std::max<qsizetype>(history.selectedIndex - (maxEntries - 1) / 2, 0);
    const qsizetype end = std::min(start + maxEntries, count);
    start = std::max<qsizetype>(end - maxEntries, 0);
    PaintHistoryState window;
    window.entries.assign(history.entries.begin() + start, history.entries.begin() + end);
    window.selectedIndex = history.selectedIndex - static_cast<int>(start);
    return window;
}

Histories recoveryHistories(const Histories& histories, const std::vector<PaintProject>& projects,
                            const Fingerprints& savedProjectFingerprints, int maxEntriesPerProject,
                            qint64 maximumPayload) {
    if (maxEntriesPerProject < 2) return {};
    qint64 base = 0;
    for (const PaintProject& project : projects) base += recoveryPayloadByteCount(project);
    for (const model::ProjectFingerprint& fingerprint : savedProjectFingerprints)
        base += model::encodedByteCount(fingerprint.project());

    Histories trimmed;
    std::vector<WeighedHistory> kept;
    for (const PaintProject& project : projects) {
        const auto history = histories.constFind(project.id);
        if (history == histories.constEnd() || trimmed.contains(project.id)) continue;
        auto window = trimmedForRecovery(*history, maxEntriesPerProject);
        if (!window || window->entries.size() < 2) continue;
        const auto stored = trimmed.insert(project.id, *std::move(window));
        kept.emplace_back(project.id, *stored);
    }
    bringUnderBudget(kept, maximumPayload - base);

    Histories result;
    for (const WeighedHistory& history : kept) result.insert(history.id(), history.state());
    return result;
}

PaintHistoryState normalizedRecoveredHistory(const PaintProject& project,
                                             const std::optional<PaintHistoryState>& history) {
    PaintHistoryState result;
    if (!history || !hasSelectedEntry(*history)) {
        result.entries = {{QUuid::createUuid(), RecoverySessionTexts::tr("Recovered Project"),
                           QStringLiteral("clock.arrow.circlepath"), project}};
        result.selectedIndex = 0;
        return result;
    }
    result = *history;
    for (PaintHistoryEntry& entry : result.entries) {
        entry.project.id = project.id;
        entry.project.fileURL = project.fileURL;
    }
    result.entries[static_cast<std::size_t>(result.selectedIndex)].project = project;
    return result;
}

} // namespace quillabrae::persistence
