// SPDX-License-Identifier: GPL-3.0-or-later
#include "RandomProjects.h"

#include <random>

namespace quillabrae::bench {

using model::PaintProject;
using model::PngBytes;

QByteArray randomBytes(qint64 size, std::uint32_t seed) {
    QByteArray bytes(size, Qt::Uninitialized);
    std::mt19937_64 random(seed);
    auto* words = reinterpret_cast<std::uint64_t*>(bytes.data());
    for (qint64 i = 0; i < size / 8; ++i) words[i] = random();
    return bytes;
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

} // namespace quillabrae::bench
