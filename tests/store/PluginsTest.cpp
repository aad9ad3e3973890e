// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginCatalog.h"
#include "store/CommandTest.h"

namespace quillabrae::store {
namespace {

effects::QuillabraePlugin pluginOf(effects::QuillabraePluginEffect effect) {
    const auto catalog = effects::pluginCatalog();
    return *std::ranges::find(catalog, effect, &effects::QuillabraePlugin::effect);
}

using Effect = effects::QuillabraePluginEffect;

class Plugins : public CommandTest {
protected:
    bool run(Effect effect) { return store->applyPlugin(pluginOf(effect)); }
};

TEST_F(Plugins, RewriteTheSelectedLayerAndRecordIt) {
    fill(0, {0.4, 0.4, 0.4, 1.0});
    const QDateTime before = project().lastModified;
    EXPECT_TRUE(run(Effect::posterize));
    EXPECT_EQ(pixel(0, 3, 3), QColor(102, 102, 102));
    EXPECT_GT(project().lastModified, before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Applied Pixel Poster"));
    expectLastEntry(QStringLiteral("Pixel Poster"), QStringLiteral("square.grid.3x3.fill"));
}

TEST_F(Plugins, AreUndoneAndRedoneAsOneStep) {
    fill(0, {1.0, 0.6, 0.1, 1.0});
    store->recordHistory(id, QStringLiteral("Fill"), QStringLiteral("drop.fill"));
    const QColor colored = pixel(0, 1, 1);
    ASSERT_TRUE(run(Effect::monochrome));
    const QColor gray = pixel(0, 1, 1);
    EXPECT_EQ(gray.red(), gray.blue());
    store->undo(id);
    EXPECT_EQ(pixel(0, 1, 1), colored);
    store->redo(id);
    EXPECT_EQ(pixel(0, 1, 1), gray);
}

TEST_F(Plugins, RecordEveryEffectUnderItsPluginsNameAndSymbol) {
    for (const effects::QuillabraePlugin& plugin : effects::pluginCatalog()) {
        EXPECT_TRUE(store->applyPlugin(plugin)) << qPrintable(plugin.title);
        EXPECT_EQ(store->statusMessage(), QStringLiteral("Applied ") + plugin.title);
        expectLastEntry(plugin.title, plugin.symbolName);
    }
}

TEST_F(Plugins, RunOnTheWholeLayerWhateverIsSelected) {
    fill(0, {0.4, 0.4, 0.4, 1.0});
    store->addLayer();
    fill(1, {0.9, 0.2, 0.2, 1.0});
    select(0);
    selectRect({1, 1, 2, 2});
    EXPECT_TRUE(run(Effect::monochrome));
    EXPECT_LT(pixel(0, 0, 0).red(), 102);
    EXPECT_EQ(pixel(0, 0, 0), pixel(0, 1, 1));
    EXPECT_EQ(pixel(1, 0, 0), QColor(230, 51, 51));
    EXPECT_TRUE(project().pixelSelection);
}

TEST_F(Plugins, LeaveOpacityAlone) {
    fill(0, {0.4, 0.4, 0.4, 1.0}, 0.5);
    EXPECT_TRUE(run(Effect::posterize));
    EXPECT_EQ(project().layers[0].opacity, 0.5);
    EXPECT_EQ(pixel(0, 3, 3), QColor(102, 102, 102));
}

TEST_F(Plugins, SucceedOnATransparentLayer) {
    store->addLayer();
    ASSERT_FALSE(project().layers[1].bitmapPNGData);
    EXPECT_TRUE(run(Effect::bloom));
    EXPECT_EQ(pixel(1, 2, 2).alpha(), 0);
    EXPECT_TRUE(project().layers[1].bitmapPNGData);
}

TEST_F(Plugins, PutFloatingPixelsDownFirst) {
    floatRed(2, 2, model::PixelSelection{3, 1, 2, 2, std::nullopt});
    EXPECT_TRUE(run(Effect::monochrome));
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_FALSE(project().pixelSelection);
    const QColor put = pixel(0, 3, 1);
    EXPECT_NE(put, QColor(Qt::white));
    EXPECT_EQ(put.red(), put.green());
    EXPECT_EQ(store->history(id).entries.size(), std::size_t{2});
}

TEST_F(Plugins, LeaveALockedLayerAndWhatFloatsAlone) {
    floatRed(2, 2, model::PixelSelection{3, 1, 2, 2, std::nullopt});
    lock(0);
    expectNothing([&] { EXPECT_FALSE(run(Effect::comicInk)); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Selected layer is locked"));
}

TEST_F(Plugins, AskForAProjectWhereThereIsNoLayer) {
    selectNoLayer();
    expectNothing([&] { EXPECT_FALSE(run(Effect::sharpen)); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open a project to run Crisp Edge"));
    store->closeProject(id);
    EXPECT_FALSE(run(Effect::bloom));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open a project to run Soft Light"));
}

TEST_F(Plugins, SayWhenALayerCannotBeProcessed) {
    store->editActiveProject([](model::PaintProject& edited) {
        edited.canvasWidth = 1e9;
        edited.canvasHeight = 1e9;
    });
    expectNothing([&] { EXPECT_FALSE(run(Effect::posterize)); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Pixel Poster could not process this layer"));
}

TEST_F(Plugins, AreNoActionToRepeat) {
    store->invertActiveImage();
    const auto action = store->lastRepeatableAction();
    EXPECT_TRUE(run(Effect::posterize));
    EXPECT_EQ(store->lastRepeatableAction(), action);
}

} // namespace
} // namespace quillabrae::store
