// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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
    /// A pixel of a layer as straight red, green, blue and alpha.
    QColor pixel(std::size_t layer, int x, int y) const {
        return raster::LayerRasterService::renderLayer(
                   project().layers[layer], project().canvasWidth, project().canvasHeight)
            .toQImage()
            .pixelColor(x, y);
    }
    void expectLastEntry(const QString& title, const QString& symbol) {
        const model::PaintHistoryState& history = store->history(id);
        EXPECT_EQ(history.entries.back().title, title);
        EXPECT_EQ(history.entries.back().symbolName, symbol);
        EXPECT_EQ(history.entries.back().project, project());
        EXPECT_EQ(history.selectedIndex, static_cast<int>(history.entries.size()) - 1);
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
