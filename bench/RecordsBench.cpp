// SPDX-License-Identifier: GPL-3.0-or-later
// What it costs to encode, decode and compare projects.
#include "RandomProjects.h"
#include "model/Base64.h"
#include "model/ProjectFingerprint.h"
#include "model/RecordCoding.h"

#include <benchmark/benchmark.h>

namespace quillabrae::bench {
namespace {

using model::PaintProject;
using model::PngBytes;

std::span<const std::uint8_t> spanOf(const QByteArray& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
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
} // namespace quillabrae::bench
