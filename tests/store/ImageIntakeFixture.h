// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/SVGImportService.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/DroppedContents.h"
#include "store/StoreTest.h"

#include <QBuffer>
#include <QFile>
#include <QImage>

#include <memory>
#include <optional>
#include <vector>

namespace quillabrae::store {

inline model::PastedImage image(double width, double height,
                                std::optional<QPointF> origin = std::nullopt) {
    const auto bytes =
        raster::LayerRasterService::solidColorPNGData(width, height, {0.0, 1.0, 0.0, 1.0});
    model::PastedImage pasted{*bytes, width, height, std::nullopt, std::nullopt};
    if (origin) {
        pasted.sourceX = origin->x();
        pasted.sourceY = origin->y();
    }
    return pasted;
}

inline QByteArray pngFile(const QColor& color = Qt::red) {
    QImage picture(5, 4, QImage::Format_RGB32);
    picture.fill(color);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    picture.save(&file, "png");
    return file.data();
}

inline QImage pixels(const model::PaintLayer& layer) {
    return raster::decodedImage(*layer.bitmapPNGData).toQImage();
}

/// A store with one project of 8 by 6 pixels, and an SVG drawing that is always 30 by 20.
class ImageIntake : public StoreTest {
protected:
    ImageIntake() {
        svgImport = [this](const QByteArray& svg) -> std::optional<model::PastedImage> {
            drawings << svg;
            if (svg.contains("broken")) return std::nullopt;
            if (svg.contains("boundless")) throw persistence::SVGSizeRefused();
            return image(30, 20);
        };
        store = makeStore();
        id = makeProject(*store);
    }

    const model::PaintProject& project() const { return *store->activeProject(); }
    DroppedContents drop(const std::vector<platform::MemoryPasteboard::Item>& items) const {
        platform::MemoryPasteboard drag;
        drag.put(items);
        return droppedContents(drag);
    }
    DroppedContents dropFiles(const QList<QUrl>& files) const {
        QByteArray list;
        for (const QUrl& url : files) list += platform::uriListOf(url);
        return drop(
            {{platform::MimeTypes::uriList, list}, {platform::MimeTypes::text, "where they are"}});
    }
    QUrl writeText(const QString& name, const QByteArray& text) const {
        QFile writing(folder.filePath(name));
        EXPECT_TRUE(writing.open(QIODevice::WriteOnly));
        writing.write(text);
        return file(name);
    }

    QList<QByteArray> drawings;
    std::unique_ptr<ProjectStore> store;
    QUuid id;
};

} // namespace quillabrae::store
