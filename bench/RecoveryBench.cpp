// SPDX-License-Identifier: GPL-3.0-or-later
// What a recorded change costs on the main thread, and what a start costs that restores it. Sizes
// are those of the recovery file, in megabytes.
#include "NoPanels.h"
#include "RandomProjects.h"
#include "model/RecordCoding.h"
#include "persistence/AppPersistenceService.h"
#include "persistence/RecoverySessionCoding.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/MemoryPasteboard.h"
#include "platform/MemoryPreferences.h"
#include "store/ProjectStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace quillabrae::bench {
namespace {

using model::PaintProject;
using model::PngBytes;
namespace Service = persistence::AppPersistenceService;

/// The smallest limit that there is.
constexpr int keptEntries = 10;

/// A store with a project of one layer, and a full history of other versions of it, whose recovery
/// file comes to about `fileSize` bytes.
class Editor {
public:
    explicit Editor(qint64 fileSize) {
        m_preferences.setValue(QStringLiteral("Quillabrae.recoveryHistoryEntryLimit"), keptEntries);
        m_store.createUntitledProject(8, 8, 96);
        // In the file the present version stands twice: as the project and as the last entry.
        const qint64 versionSize = fileSize / 4 * 3 / (keptEntries + 1) - 1024;
        for (int i = 0; i < keptEntries; ++i)
            record(PngBytes(randomBytes(versionSize, static_cast<std::uint32_t>(i))));
    }

    /// A change to what the layer was `keptEntries` changes ago.
    void change() {
        const auto& entries = m_store.history(m_store.openProjects().front().id).entries;
        record(*entries[entries.size() - keptEntries].project.layers.front().bitmapPNGData);
    }

    QString file() const {
        return m_folder.filePath(
            QStringLiteral(".local/share/Quillabrae/Autosave/Recovery.quillabraesession"));
    }

private:
    void record(const PngBytes& pixels) {
        m_store.editActiveProject([&](PaintProject& project) {
            project.layers.front().bitmapPNGData = pixels;
            project.lastModified = m_clock.now();
        });
        m_store.recordHistory(*m_store.activeProjectID(), QStringLiteral("Brush"),
                              QStringLiteral("paintbrush"));
    }

    QTemporaryDir m_folder;
    NoPanels m_panels;
    platform::MemoryPreferences m_preferences;
    platform::SystemClock m_clock;
    platform::NoFileIcons m_icons;
    platform::MemoryPasteboard m_pasteboard;
    store::ProjectStore m_store{{m_panels, m_preferences, m_clock, m_icons, m_pasteboard,
                                 platform::AppPaths::under(m_folder.path())},
                                store::Persistence::on};
};

void recordsAChange(benchmark::State& state) {
    Editor editor(state.range(0) * megabyte);
    for (auto _ : state) editor.change();
    const qint64 size = QFile(editor.file()).size();
    state.SetBytesProcessed(state.iterations() * size);
    state.counters["file_MB"] = static_cast<double>(size) / megabyte;
}

enum class Sync { none, data };

/// The same bytes, ready in memory, in one sequential write to a new file that takes the former
/// one's place; with `Sync::data`, once they are on the disk.
void writesAsManyBytes(benchmark::State& state, Sync sync) {
    const Editor editor(state.range(0) * megabyte);
    QFile former(editor.file());
    if (!former.open(QIODevice::ReadOnly)) return state.SkipWithError("no file");
    const QByteArray bytes = former.readAll();
    former.close();
    const QByteArray target = QFile::encodeName(editor.file());
    const QByteArray next = target + ".new";
    for (auto _ : state) {
        const int file = ::open(next.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size())) !=
            bytes.size())
            state.SkipWithError("not written");
        if (sync == Sync::data) ::fdatasync(file);
        ::close(file);
        std::rename(next.constData(), target.constData());
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1)->Arg(32)->Arg(256)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(recordsAChange)->Apply(sizes);
BENCHMARK_CAPTURE(writesAsManyBytes, to_memory, Sync::none)->Apply(sizes);
BENCHMARK_CAPTURE(writesAsManyBytes, to_the_disk, Sync::data)->Apply(sizes);

// One project, saved, with a history, whose pictures come to about `payload` bytes as they stand in
// the file: the project's own, the fingerprint's and the history entries'.
persistence::PaintAutosaveSession sessionOf(qint64 payload) {
    constexpr int entryCount = 8;
    persistence::PaintAutosaveSession session;
    PaintProject project = projectOf(4, payload / 4 / (entryCount + 2));
    session.savedProjectFingerprints.insert(project.id, *model::ProjectFingerprint::of(project));
    model::PaintHistoryState history;
    for (int i = 0; i < entryCount; ++i) {
        project.layers.back().bitmapPNGData = PngBytes(
            randomBytes(payload / 4 / (entryCount + 2), static_cast<std::uint32_t>(50 + i)));
        history.entries.push_back(
            {QUuid::createUuid(), QStringLiteral("Brush"), QStringLiteral("brush"), project});
    }
    history.selectedIndex = entryCount - 1;
    session.histories.insert(project.id, history);
    session.projects = {project};
    session.activeProjectID = project.id;
    session.savedAt = project.lastModified;
    return session;
}

/// The text is in memory already: what is left is to parse it and to decode its base64.
void parsesTheSession(benchmark::State& state) {
    const QByteArray json = model::encodedJson(sessionOf(state.range(0) * megabyte));
    for (auto _ : state) {
        state.PauseTiming();
        QByteArray text;
        text.reserve(json.size() + model::JsonReader::padding);
        text.append(json);
        persistence::PaintAutosaveSession session;
        state.ResumeTiming();
        model::JsonReader reader(std::move(text));
        model::decodeOnto(session, reader);
        benchmark::DoNotOptimize(session);
    }
    state.SetBytesProcessed(state.iterations() * json.size());
}

void readsTheFile(benchmark::State& state) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("Recovery.quillabraesession"));
    Service::saveAutosavedSession(sessionOf(state.range(0) * megabyte), file);
    for (auto _ : state) benchmark::DoNotOptimize(Service::loadAutosavedSession(file));
    state.SetBytesProcessed(state.iterations() * QFile(file).size());
}

BENCHMARK(parsesTheSession)->Apply(sizes);
BENCHMARK(readsTheFile)->Apply(sizes);

// What is computed on every recorded edit before the file is written.
void choosesTheHistoriesToKeep(benchmark::State& state) {
    const auto session = sessionOf(256 * megabyte);
    for (auto _ : state)
        benchmark::DoNotOptimize(persistence::recoveryHistories(
            session.histories, session.projects, session.savedProjectFingerprints, 25,
            persistence::maximumPayloadByteCount));
}

BENCHMARK(choosesTheHistoriesToKeep)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace quillabrae::bench
