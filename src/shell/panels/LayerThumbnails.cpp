// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayerThumbnails.h"

#include "raster/DecodeCache.h"
#include "shell/editor/ProjectThumbnail.h"

namespace quillabrae::shell {

LayerThumbnails::LayerThumbnails(QObject* parent) : QObject(parent) {}

LayerThumbnails::~LayerThumbnails() {
    m_work.clear();
}

bool LayerThumbnails::Source::matches(const Source& other) const {
    if (canvas != other.canvas || room != other.room) return false;
    if (!pixels || !other.pixels) return !pixels && !other.pixels;
    return pixels->sharesBufferWith(*other.pixels);
}

QImage LayerThumbnails::picture(const model::PaintLayer& layer, QSizeF canvas, QSize room) {
    const Source source{layer.bitmapPNGData, canvas, room};
    Entry& entry = m_entries[layer.id];
    if (entry.asked.matches(source)) return entry.picture;
    entry.asked = source;
    if (!source.pixels) {
        entry.picture = {};
        return {};
    }
    make(layer.id, source);
    return entry.picture;
}

void LayerThumbnails::make(const QUuid& id, const Source& source) {
    m_work.run([this, id, source] {
        // A look at all layers must not push out the one that is worked on.
        const raster::DecodeCacheReadOnly readOnly;
        model::PaintLayer layer;
        layer.bitmapPNGData = source.pixels;
        const QImage picture = layerThumbnail(layer, source.canvas, source.room);
        QMetaObject::invokeMethod(
            this, [this, id, source, picture] { take(id, source, picture); }, Qt::QueuedConnection);
    });
}

void LayerThumbnails::take(const QUuid& id, const Source& source, const QImage& picture) {
    const auto entry = m_entries.find(id);
    if (entry == m_entries.end() || !entry->asked.matches(source)) return;
    entry->picture = picture;
    Q_EMIT pictureChanged(id);
}

void LayerThumbnails::keepOnly(const QSet<QUuid>& layerIDs) {
    m_entries.removeIf([&](const auto& entry) { return !layerIDs.contains(entry.key()); });
}

} // namespace quillabrae::shell
