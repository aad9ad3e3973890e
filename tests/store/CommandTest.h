// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/StoreTest.h"

#include <QSignalSpy>

namespace quillabrae::store {

/// A store with one new project, of a white layer named "Background".
class CommandTest : public StoreTest {
protected:
    CommandTest() : store(makeStore()), id(makeProject(*store)) {}

    const model::PaintProject& project() const { return *store->project(id); }
    QStringList names() const {
        QStringList list;
        for (const model::PaintLayer& layer : project().layers) list << layer.name;
        return list;
    }
    QString selectedName() const {
        const model::PaintLayer* layer = project().selectedLayer();
        return layer ? layer->name : QString();
    }
    void select(std::size_t index) {
        store->editActiveProject(
            [=](model::PaintProject& edited) { edited.selectedLayerID = edited.layers[index].id; });
    }
    void selectNoLayer() {
        store->editActiveProject(
            [](model::PaintProject& edited) { edited.selectedLayerID = QUuid::createUuid(); });
    }
    void lock(std::size_t index) {
        store->editActiveProject(
            [=](model::PaintProject& edited) { edited.layers[index].isLocked = true; });
    }
    /// Makes the layer one colour all over.
    void fill(std::size_t index, const model::ColorValue& color, double opacity = 1.0) {
        store->editActiveProject([&](model::PaintProject& edited) {
            edited.layers[index].bitmapPNGData = raster::LayerRasterService::solidColorPNGData(
                edited.canvasWidth, edited.canvasHeight, color);
            edited.layers[index].opacity = opacity;
        });
    }
    /// Paints a red rectangle on the layer.
    void paintRed(std::size_t index, const QRect& rect) {
        store->editActiveProject([&](model::PaintProject& edited) {
            model::PaintLayer& layer = edited.layers[index];
            raster::RasterImage image = raster::LayerRasterService::renderLayer(
                layer, edited.canvasWidth, edited.canvasHeight);
            raster::LayerRasterService::draw(
                image, [&](QPainter& painter) { painter.fillRect(rect, Qt::red); });
            layer.bitmapPNGData = raster::LayerRasterService::pngData(image);
        });
    }
    void selectRect(const QRectF& rect) {
        store->editActiveProject([&](model::PaintProject& edited) {
            edited.pixelSelection = model::PixelSelection{rect.x(), rect.y(), rect.width(),
                                                          rect.height(), std::nullopt};
            edited.isCanvasSelected = true;
        });
    }
    /// A pixel of a layer as straight red, green, blue and alpha.
    QColor pixel(std::size_t layer, int x, int y) const {
        return raster::LayerRasterService::renderLayer(
                   project().layers[layer], project().canvasWidth, project().canvasHeight)
            .toQImage()
            .pixelColor(x, y);
    }
    /// The smallest rectangle around the layer's pixels that are exactly red; it must be full of
    /// them. Null without any.
    QRect redPixels(std::size_t layer) const {
        QRect bounds;
        int count = 0;
        for (int y = 0; y < static_cast<int>(project().canvasHeight); ++y) {
            for (int x = 0; x < static_cast<int>(project().canvasWidth); ++x) {
                if (pixel(layer, x, y) != QColor(Qt::red)) continue;
                bounds |= QRect(x, y, 1, 1);
                ++count;
            }
        }
        EXPECT_EQ(count, bounds.width() * bounds.height());
        return bounds;
    }
    /// Makes a picture float over the selected layer, with the canvas selected.
    void floatPicture(const QImage& picture,
                      const std::optional<model::PixelSelection>& selection) {
        store->editActiveProject([&](model::PaintProject& edited) {
            const auto image = raster::RasterImage::fromQImage(QImage(picture));
            edited.floatingSelection =
                model::FloatingPixelSelection{raster::encodedImage(image), double(picture.width()),
                                              double(picture.height()), edited.selectedLayerID};
            edited.pixelSelection = selection;
            edited.isCanvasSelected = true;
        });
    }
    void floatRed(int width, int height, const std::optional<model::PixelSelection>& selection) {
        QImage picture(width, height, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        floatPicture(picture, selection);
    }
    void expectLastEntry(const QString& title, const QString& symbol) {
        const model::PaintHistoryState& history = store->history(id);
        EXPECT_EQ(history.entries.back().title, title);
        EXPECT_EQ(history.entries.back().symbolName, symbol);
        EXPECT_EQ(history.entries.back().project, project());
        EXPECT_EQ(history.selectedIndex, static_cast<int>(history.entries.size()) - 1);
    }
    /// Undoes all of the history, whose last entry is the current one, and redoes it.
    void expectUndoAndRedoThroughHistory() {
        const auto entries = store->history(id).entries;
        for (std::size_t i = entries.size() - 1; i-- > 0;) {
            store->undo(id);
            EXPECT_EQ(project(), entries[i].project) << i;
            EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored ") + entries[i].title);
        }
        for (std::size_t i = 1; i < entries.size(); ++i) {
            store->redo(id);
            EXPECT_EQ(project(), entries[i].project) << i;
        }
    }
    /// Runs a command that must neither change the project nor record anything.
    template <typename Command>
    void expectNothing(Command command) {
        const model::PaintProject before = project();
        const std::size_t entries = store->history(id).entries.size();
        const QSignalSpy changed(store.get(), &ProjectStore::projectChanged);
        command();
        EXPECT_EQ(project(), before);
        EXPECT_EQ(store->history(id).entries.size(), entries);
        EXPECT_EQ(changed.count(), 0);
    }

    std::unique_ptr<ProjectStore> store;
    QUuid id;
};

} // namespace quillabrae::store
