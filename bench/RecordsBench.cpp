// SPDX-License-Identifier: GPL-3.0-or-later
// What it costs to encode, decode, compare and keep projects.
#include "model/Base64.h"
#include "model/ProjectFingerprint.h"
#include "model/RecordCoding.h"
#include "persistence/AppPersistenceService.h"
#include "persistence/RecoverySession.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

namespace quillabrae {
namespace {

using model::PaintProject;
using model::PngBytes;

constexpr qint64 megabyte = qint64{1024} * 1024;

QByteArray randomBytes(qint64 size, std::uint32_t seed) {
    QByteArray bytes(size, Qt::Uninitialized);
    std::mt19937_64 random(seed);
    auto* words = reinterpret_cast<std::uint64_t*>(bytes.data());
    for (qint64 i = 0; i < size / 8; ++i) words[i] = random();
    return bytes;
}

std::span<const std::uint8_t> spanOf(const QByteArray& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

PaintProject projectOf(int layerCount, qint64 bytesEach) {
    PaintProject project;
    project.id = QUuid::createUuid();
    project.title = QStringLiteral("Benchmark");
    project.fileURL = QUrl::fromLocalFile(QStringLiteral("/tmp/Benchmark.quillabrae"));
    project.canvasWidth = 4096.0;
    project.canvasHeight = 4096.0;
    project.lastModified = QDateTime::currentDateTimeUtc();
    for (int i = 0; i < layerCount; ++i) {
        model::PaintLayer layer;
        layer.id = QUuid::createUuid();
        layer.name = QStringLiteral("Layer %1").arg(i);
        layer.bitmapPNGData = PngBytes(randomBytes(bytesEach, static_cast<std::uint32_t>(i)));
        project.layers.push_back(layer);
    }
    project.selectedLayerID = project.layers.front().id;
    return project;
}

// Base64

constexpr qint64 base64Size = 12 * megabyte;

void encodesBase64(benchmark::State& state, model::base64::Method method) {
    const QByteArray bytes = randomBytes(base64Size, 1);
    QByteArray text(model::base64::encodedLength(base64Size), Qt::Uninitialized);
    for (auto _ : state) {
        model::base64::encode(spanOf(bytes), text.data(), method);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * base64Size);
}

void decodesBase64(benchmark::State& state, model::base64::Method method) {
    const QByteArray text = randomBytes(base64Size, 1).toBase64();
    QByteArray bytes(base64Size, Qt::Uninitialized);
    for (auto _ : state) {
        const bool done =
            model::base64::decode({text.constData(), std::size_t(text.size())},
                                  reinterpret_cast<std::uint8_t*>(bytes.data()), method);
        benchmark::DoNotOptimize(done);
    }
    state.SetBytesProcessed(state.iterations() * base64Size);
}

void qtEncodesBase64(benchmark::State& state) {
    const QByteArray bytes = randomBytes(base64Size, 1);
    for (auto _ : state) benchmark::DoNotOptimize(bytes.toBase64());
    state.SetBytesProcessed(state.iterations() * base64Size);
}

void qtDecodesBase64(benchmark::State& state) {
    const QByteArray text = randomBytes(base64Size, 1).toBase64();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors));
    state.SetBytesProcessed(state.iterations() * base64Size);
}

BENCHMARK_CAPTURE(encodesBase64, fastest, model::base64::Method::fastest);
BENCHMARK_CAPTURE(encodesBase64, plain, model::base64::Method::plain);
BENCHMARK(qtEncodesBase64);
BENCHMARK_CAPTURE(decodesBase64, fastest, model::base64::Method::fastest);
BENCHMARK_CAPTURE(decodesBase64, plain, model::base64::Method::plain);
BENCHMARK(qtDecodesBase64);

// "Unsaved": ten layers of 4096 by 4096, 6 MB of PNG each

enum class Change { none, oneLayer, oneLayerOfEqualSize };

void tellsWhetherAProjectIsUnsaved(benchmark::State& state, Change change) {
    PaintProject project = projectOf(10, 6 * megabyte);
    const auto saved = model::ProjectFingerprint::of(project);
    project.lastModified = project.lastModified.addSecs(1);
    if (change != Change::none) {
        const qint64 size = change == Change::oneLayer ? 6 * megabyte + 8 : 6 * megabyte;
        project.layers.back().bitmapPNGData = PngBytes(randomBytes(size, 99));
    }
    for (auto _ : state) {
        const auto present = model::ProjectFingerprint::of(project);
        benchmark::DoNotOptimize(present == saved);
    }
}

BENCHMARK_CAPTURE(tellsWhetherAProjectIsUnsaved, unchanged, Change::none);
BENCHMARK_CAPTURE(tellsWhetherAProjectIsUnsaved, oneLayerChanged, Change::oneLayer);
BENCHMARK_CAPTURE(tellsWhetherAProjectIsUnsaved, oneLayerOfEqualSize, Change::oneLayerOfEqualSize);

// The recovery file. Its sizes are those of the pictures in it.

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

void writesTheSession(benchmark::State& state) {
    const QTemporaryDir folder;
    const auto session = sessionOf(state.range(0) * megabyte);
    const QString file = folder.filePath(QStringLiteral("Recovery.quillabraesession"));
    for (auto _ : state) persistence::AppPersistenceService::saveAutosavedSession(session, file);
    const qint64 size = QFile(file).size();
    state.SetBytesProcessed(state.iterations() * size);
    state.counters["file"] = static_cast<double>(size);
}

// The same bytes, ready in memory, in pieces of a megabyte to a new file that takes the old one's
// place.
void writesAsManyBytes(benchmark::State& state) {
    const QTemporaryDir folder;
    const qint64 size = model::encodedByteCount(sessionOf(state.range(0) * megabyte).projects[0]);
    const auto session = sessionOf(state.range(0) * megabyte);
    const QString file = folder.filePath(QStringLiteral("Recovery.quillabraesession"));
    persistence::AppPersistenceService::saveAutosavedSession(session, file);
    QFile former(file);
    if (!former.open(QIODevice::ReadOnly)) return state.SkipWithError("no file");
    const QByteArray bytes = former.readAll();
    former.close();
    const QString temporary = file + QStringLiteral(".new");
    for (auto _ : state) {
        QFile next(temporary);
        if (!next.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return state.SkipWithError("no file");
        for (qint64 at = 0; at < bytes.size(); at += megabyte)
            next.write(bytes.constData() + at, std::min(megabyte, bytes.size() - at));
        next.close();
        std::filesystem::rename(temporary.toStdU16String(), file.toStdU16String());
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
    benchmark::DoNotOptimize(size);
}

void readsTheSession(benchmark::State& state) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("Recovery.quillabraesession"));
    persistence::AppPersistenceService::saveAutosavedSession(sessionOf(state.range(0) * megabyte),
                                                             file);
    for (auto _ : state)
        benchmark::DoNotOptimize(persistence::AppPersistenceService::loadAutosavedSession(file));
    state.SetBytesProcessed(state.iterations() * QFile(file).size());
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1)->Arg(32)->Arg(256)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(writesTheSession)->Apply(sizes);
BENCHMARK(writesAsManyBytes)->Apply(sizes);
BENCHMARK(readsTheSession)->Apply(sizes);

// What is computed on every recorded edit before the file is written.
void choosesTheHistoriesToKeep(benchmark::State& state) {
    const auto session = sessionOf(256 * megabyte);
    for (auto _ : state)
        benchmark::DoNotOptimize(persistence::recoveryHistories(
            session.histories, session.projects, session.savedProjectFingerprints, 25,
            persistence::maximumPayloadByteCount));
}

BENCHMARK(choosesTheHistoriesToKeep)->Unit(benchmark::kMicrosecond);

// A project's own document

void encodesAProject(benchmark::State& state) {
    const PaintProject project = projectOf(10, 6 * megabyte);
    for (auto _ : state) benchmark::DoNotOptimize(model::encodedJson(project));
    state.SetBytesProcessed(state.iterations() * model::encodedByteCount(project));
}

void decodesAProject(benchmark::State& state) {
    const QByteArray json = model::encodedJson(projectOf(10, 6 * megabyte));
    for (auto _ : state) benchmark::DoNotOptimize(model::decodedJson<PaintProject>(json));
    state.SetBytesProcessed(state.iterations() * json.size());
}

BENCHMARK(encodesAProject)->Unit(benchmark::kMillisecond);
BENCHMARK(decodesAProject)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace quillabrae
