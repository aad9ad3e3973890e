// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"
#include "store/CommandTest.h"

#include <limits>

namespace quillabrae::store {
namespace {

using LayerCommands = CommandTest;

TEST_F(LayerCommands, WithoutAProjectTheyDoNothing) {
    store->closeProject(id);
    const QString status = store->statusMessage();
    store->addLayer();
    store->deleteSelectedLayer();
    store->duplicateSelectedLayer();
    store->moveSelectedLayer(1);
    store->flattenLayerDown(QUuid::createUuid());
    store->importLayerFromFile();
    store->applySelectedLayerProperties({});
    EXPECT_EQ(store->selectedLayerForProperties(), std::nullopt);
    EXPECT_EQ(store->statusMessage(), status);
    EXPECT_EQ(panels.shown, QStringList());
}

TEST_F(LayerCommands, ANewLayerIsEmptyOnTopAndSelected) {
    const QDateTime before = project().lastModified;
    const QString status = store->statusMessage();
    store->addLayer();
    EXPECT_EQ(names(), QStringList({QStringLiteral("Background"), QStringLiteral("Layer 2")}));
    EXPECT_EQ(selectedName(), QStringLiteral("Layer 2"));
    const model::PaintLayer& added = project().layers.back();
    EXPECT_TRUE(added.isVisible);
    EXPECT_FALSE(added.isLocked);
    EXPECT_EQ(added.opacity, 1.0);
    EXPECT_EQ(added.bitmapPNGData, std::nullopt);
    EXPECT_GT(project().lastModified, before);
    EXPECT_EQ(store->statusMessage(), status);
    expectLastEntry(QStringLiteral("New Layer"), QStringLiteral("plus.square"));
}

TEST_F(LayerCommands, ANewLayersNameCountsTheLayersThereAre) {
    store->addLayer();
    store->addLayer();
    select(1);
    store->deleteSelectedLayer();
    store->addLayer();
    EXPECT_EQ(names(), QStringList({QStringLiteral("Background"), QStringLiteral("Layer 3"),
                                    QStringLiteral("Layer 3")}));
}

TEST_F(LayerCommands, TheLastLayerStays) {
    expectNothing([&] { store->deleteSelectedLayer(); });
    store->addLayer();
    selectNoLayer();
    expectNothing([&] { store->deleteSelectedLayer(); });
}

TEST_F(LayerCommands, DeletingSelectsTheLayerBelowOrTheNewBottom) {
    store->addLayer();
    store->addLayer();
    select(1);
    lock(1);
    store->deleteSelectedLayer();
    EXPECT_EQ(selectedName(), QStringLiteral("Background"));
    expectLastEntry(QStringLiteral("Delete Layer"), QStringLiteral("trash"));
    store->deleteSelectedLayer();
    EXPECT_EQ(selectedName(), QStringLiteral("Layer 3"));
    EXPECT_EQ(names(), QStringList(QStringLiteral("Layer 3")));
}

TEST_F(LayerCommands, DeletingLeavesFloatingPixelsAlone) {
    store->addLayer();
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection = model::FloatingPixelSelection{
            *edited.layers.front().bitmapPNGData, 8, 6, edited.selectedLayerID};
    });
    store->deleteSelectedLayer();
    EXPECT_TRUE(project().floatingSelection);
}

TEST_F(LayerCommands, ADuplicateLiesAboveItsSourceAndSharesItsPixels) {
    store->addLayer();
    select(0);
    lock(0);
    store->duplicateSelectedLayer();
    store->duplicateSelectedLayer();
    EXPECT_EQ(names(),
              QStringList({QStringLiteral("Background"), QStringLiteral("Background Copy"),
                           QStringLiteral("Background Copy Copy"), QStringLiteral("Layer 2")}));
    const auto& layers = project().layers;
    EXPECT_EQ(project().selectedLayerID, layers[2].id);
    EXPECT_NE(layers[0].id, layers[1].id);
    EXPECT_TRUE(layers[2].isLocked);
    EXPECT_TRUE(layers[2].bitmapPNGData->sharesBufferWith(*layers[0].bitmapPNGData));
    expectLastEntry(QStringLiteral("Duplicate Layer"), QStringLiteral("doc.on.doc"));
    selectNoLayer();
    expectNothing([&] { store->duplicateSelectedLayer(); });
}

TEST_F(LayerCommands, MovingSwapsTwoLayersAndStopsAtTheEnds) {
    store->addLayer();
    store->addLayer();
    expectNothing([&] { store->moveSelectedLayer(1); });
    store->moveSelectedLayer(-2);
    EXPECT_EQ(names(), QStringList({QStringLiteral("Layer 3"), QStringLiteral("Layer 2"),
                                    QStringLiteral("Background")}));
    EXPECT_EQ(selectedName(), QStringLiteral("Layer 3"));
    expectLastEntry(QStringLiteral("Move Layer"), QStringLiteral("arrow.up.arrow.down"));
    expectNothing([&] { store->moveSelectedLayer(-1); });
    expectNothing([&] { store->moveSelectedLayer(std::numeric_limits<int>::max()); });
    selectNoLayer();
    expectNothing([&] { store->moveSelectedLayer(1); });
}

TEST_F(LayerCommands, FlatteningBakesBothOpacitiesIn) {
    store->addLayer();
    fill(0, {1, 0, 0, 1}, 0.5);
    fill(1, {0, 0, 1, 1}, 0.5);
    store->editActiveProject([](model::PaintProject& edited) {
        edited.layers[0].isLocked = true;
        edited.layers[1].isVisible = false;
    });
    store->flattenLayerDown(project().layers[1].id);
    ASSERT_EQ(names(), QStringList(QStringLiteral("Background + Layer 2")));
    const model::PaintLayer& merged = project().layers.front();
    EXPECT_EQ(merged.opacity, 1.0);
    EXPECT_TRUE(merged.isVisible);
    EXPECT_TRUE(merged.isLocked);
    EXPECT_EQ(project().selectedLayerID, merged.id);
    // Half blue over half red: alpha 3/4, a third of it red.
    const QColor mixed = pixel(0, 3, 3);
    EXPECT_NEAR(mixed.alpha(), 191, 1);
    EXPECT_NEAR(mixed.red(), 85, 2);
    EXPECT_NEAR(mixed.blue(), 170, 2);
    expectLastEntry(QStringLiteral("Flatten Down"), QStringLiteral("square.stack.3d.down.right"));
}

TEST_F(LayerCommands, NamesGrowWithEveryFlattening) {
    store->addLayer();
    store->addLayer();
    store->flattenLayerDown(project().layers[2].id);
    store->flattenLayerDown(project().layers[1].id);
    EXPECT_EQ(selectedName(), QStringLiteral("Background + Layer 2 + Layer 3"));
}

TEST_F(LayerCommands, TheBottomLayerAndAStrangerCannotBeFlattened) {
    store->addLayer();
    expectNothing([&] { store->flattenLayerDown(project().layers[0].id); });
    expectNothing([&] { store->flattenLayerDown(QUuid::createUuid()); });
}

TEST_F(LayerCommands, FlatteningPutsFloatingPixelsDownFirst) {
    store->addLayer();
    store->editActiveProject([](model::PaintProject& edited) {
        const auto red = raster::LayerRasterService::solidColorPNGData(2, 2, {1, 0, 0, 1});
        edited.floatingSelection = model::FloatingPixelSelection{*red, 2, 2, edited.layers[1].id};
        edited.pixelSelection = model::PixelSelection{3, 1, 2, 2, std::nullopt};
    });
    const auto entries = store->history(id).entries.size();
    store->flattenLayerDown(project().layers[1].id);
    EXPECT_EQ(project().floatingSelection, std::nullopt);
    EXPECT_EQ(project().pixelSelection, std::nullopt);
    EXPECT_EQ(pixel(0, 4, 2), QColor(Qt::red));
    EXPECT_EQ(pixel(0, 5, 2), QColor(Qt::white));
    EXPECT_EQ(store->history(id).entries.size(), entries + 1);
}

TEST_F(LayerCommands, FlatteningSaysWhenFloatingPixelsHaveNoLayer) {
    store->addLayer();
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection = model::FloatingPixelSelection{
            *edited.layers.front().bitmapPNGData, 8, 6, QUuid::createUuid()};
    });
    expectNothing([&] { store->flattenLayerDown(project().layers[1].id); });
    EXPECT_EQ(store->statusMessage(),
              QStringLiteral("Flatten failed: selected pixels could not be dropped"));
}

TEST_F(LayerCommands, FlatteningKeepsAnOutlineWithoutFloatingPixels) {
    store->addLayer();
    store->editActiveProject([](model::PaintProject& edited) {
        edited.pixelSelection = model::PixelSelection{3, 1, 2, 2, std::nullopt};
        edited.isCanvasSelected = true;
    });
    store->flattenLayerDown(project().layers[1].id);
    EXPECT_TRUE(project().pixelSelection);
    EXPECT_TRUE(project().isCanvasSelected);
}

TEST_F(LayerCommands, AnImportedPictureLiesAtTheTopLeftAndIsCroppedToTheCanvas) {
    QImage picture(20, 3, QImage::Format_ARGB32);
    picture.fill(Qt::blue);
    picture.save(folder.filePath(QStringLiteral("sail.boat.png")));
    panels.imagesToImport.push_back(file(QStringLiteral("sail.boat.png")));
    store->importLayerFromFile();
    EXPECT_EQ(names(), QStringList({QStringLiteral("Background"), QStringLiteral("sail.boat")}));
    EXPECT_EQ(selectedName(), QStringLiteral("sail.boat"));
    EXPECT_EQ(project().canvasWidth, 8);
    EXPECT_EQ(raster::decodedImage(*project().layers.back().bitmapPNGData).width(), 8);
    EXPECT_EQ(pixel(1, 7, 2), QColor(Qt::blue));
    EXPECT_EQ(pixel(1, 7, 3).alpha(), 0);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Imported sail.boat.png"));
    expectLastEntry(QStringLiteral("Import Layer"), QStringLiteral("square.and.arrow.down"));
}

TEST_F(LayerCommands, AnImportThatIsCancelledOrUnreadableIsSilent) {
    const QString status = store->statusMessage();
    expectNothing([&] { store->importLayerFromFile(); });
    panels.imagesToImport.push_back(file(QStringLiteral("missing.png")));
    expectNothing([&] { store->importLayerFromFile(); });
    EXPECT_EQ(store->statusMessage(), status);
    EXPECT_EQ(panels.shown.size(), 2);
}

TEST_F(LayerCommands, AnImportOfAPictureBeyondTheLimitsSaysSo) {
    panels.imagesToImport.push_back(writeTooLargePicture(QStringLiteral("wall.png")));
    expectNothing([&] { store->importLayerFromFile(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open failed: image could not be read"));
}

TEST_F(LayerCommands, PropertiesAreLimitedToWhatALayerMayHave) {
    store->applySelectedLayerProperties({QString(), 1.7, false, true});
    const model::PaintLayer layer = *store->selectedLayerForProperties();
    EXPECT_EQ(layer.name, QStringLiteral("Layer"));
    EXPECT_EQ(layer.opacity, 1.0);
    EXPECT_FALSE(layer.isVisible);
    EXPECT_TRUE(layer.isLocked);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Layer properties updated"));
    expectLastEntry(QStringLiteral("Layer Properties"), QStringLiteral("wand.and.sparkles"));
    store->applySelectedLayerProperties({QStringLiteral("Sky"), -0.2, true, false});
    EXPECT_EQ(store->selectedLayerForProperties()->opacity, 0.0);
    EXPECT_EQ(selectedName(), QStringLiteral("Sky"));
    selectNoLayer();
    expectNothing([&] { store->applySelectedLayerProperties({}); });
    EXPECT_EQ(store->selectedLayerForProperties(), std::nullopt);
}

TEST_F(LayerCommands, ObserversHearOnceAndSeeTheFinishedProject) {
    std::vector<QStringList> seen;
    QObject::connect(store.get(), &ProjectStore::projectChanged, store.get(),
                     [&] { seen.push_back(names()); });
    store->addLayer();
    store->flattenLayerDown(project().layers[1].id);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[1], QStringList(QStringLiteral("Background + Layer 2")));
}

TEST_F(LayerCommands, UndoAndRedoTakeEveryCommandBackAndForth) {
    store->addLayer();
    store->duplicateSelectedLayer();
    store->moveSelectedLayer(-1);
    store->flattenLayerDown(project().layers[1].id);
    store->applySelectedLayerProperties({QStringLiteral("All"), 0.5, true, false});
    store->addLayer();
    store->deleteSelectedLayer();
    expectUndoAndRedoThroughHistory();
}

} // namespace
} // namespace quillabrae::store
