// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "platform/WorkQueue.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QSizeF>

namespace quillabrae::shell {

/// Small pictures of the layers that are looked at. They are made on a thread of their own, from
/// values that nothing changes, so that neither a stroke nor a large canvas waits for them.
class LayerThumbnails final : public QObject {
    Q_OBJECT

public:
    explicit LayerThumbnails(QObject* parent = nullptr);
    ~LayerThumbnails() override;

    /// The layer fitted into `room` (device pixels) with the canvas's proportions. What is known of
    /// it: an older picture, or a null one, while a new one is being made.
    QImage picture(const model::PaintLayer& layer, QSizeF canvas, QSize room);
    /// Forgets all but these layers.
    void keepOnly(const QSet<QUuid>& layerIDs);

Q_SIGNALS:
    void pictureChanged(const QUuid& layerID);

private:
    /// What a picture was made of.
    struct Source {
        std::optional<model::PngBytes> pixels;
        QSizeF canvas;
        QSize room;

        bool matches(const Source& other) const;
    };
    struct Entry {
        Source asked;
        QImage picture;
    };

    void make(const QUuid& id, const Source& source);
    void take(const QUuid& id, const Source& source, const QImage& picture);

    QHash<QUuid, Entry> m_entries;
    platform::WorkQueue m_work;
};

} // namespace quillabrae::shell
