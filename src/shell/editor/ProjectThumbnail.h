// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "model/PngBytes.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <memory>
#include <unordered_map>

namespace quillabrae::shell {

/// The small pictures of layers that thumbnails were made of, for as long as the layers' bytes are
/// held: of many layers, those that changed are looked at again. On one thread at a time.
class LayerPictureCache {
public:
    /// The layer's pixels, stretched to that size; null when they are not readable.
    QImage picture(const model::PngBytes& pixels, QSize size);
    void forgetDead();

private:
    struct Entry {
        std::weak_ptr<const QByteArray> pixels;
        QSize size;
        QImage picture;
    };
    std::unordered_map<const QByteArray*, Entry> m_entries;
};

/// The project's visible layers at their opacities, with the pixels that float, on clear; fitted
/// into `room` (device pixels) with the canvas's proportions, so one side equals the room's.
/// Sampled, not filtered whole: its cost does not grow with the canvas once the layers are decoded.
/// Layers that `known` has a picture of are not looked at, and it learns those of the others. Safe
/// on any thread that has `known` to itself.
QImage projectThumbnail(const model::PaintProject& project, QSize room, LayerPictureCache& known);

/// One layer at full strength, fitted likewise; clear for pixels that are not readable, null for a
/// layer without any. Safe on any thread.
QImage layerThumbnail(const model::PaintLayer& layer, QSizeF canvas, QSize room);

} // namespace quillabrae::shell
