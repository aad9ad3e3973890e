// SPDX-License-Identifier: GPL-3.0-or-later
// What people who do not see the canvas are told of it.
#include "canvas/CanvasDescription.h"
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "canvas/CanvasWidgetAccessible.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/StoreTest.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <memory>
#include <vector>

namespace quillabrae::canvas {
namespace {

using model::PaintTool;

class AccessibleCanvas : public store::StoreTest {
protected:
    void SetUp() override {
        QAccessible::setActive(true);
        QObject::connect(widget.findChild<CanvasAnnouncer*>(), &CanvasAnnouncer::announced,
                         [this](const QString& description) { announced.push_back(description); });
        projects->editSettings([](model::PaintAppSettings& settings) {
            settings.selectedTool = PaintTool::paintbrush;
            settings.primaryColor = {1.0, 0.0, 0.0, 1.0};
            settings.brushSize = 8.0;
        });
        projects->createUntitledProject(200, 100, 96);
        widget.resize(900, 700);
        widget.show();
        QApplication::processEvents();
        projects->editSettings([](auto& settings) { settings.zoomScale = 2.0; });
    }
    void TearDown() override { QAccessible::setActive(false); }

    QString description() {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Description);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&widget, key, modifiers);
    }
    bool isAnnounced(const QString& words) {
        return QTest::qWaitFor([&] { return !announced.empty() && announced.back() == words; });
    }

    std::unique_ptr<store::ProjectStore> projects = makeStore();
    CanvasWidget widget{*projects};
    std::vector<QString> announced;
};

TEST_F(AccessibleCanvas, IsACanvasWithItsNameThatTakesTheKeyboard) {
    QAccessibleInterface* canvas = QAccessible::queryAccessibleInterface(&widget);
    EXPECT_EQ(canvas->role(), QAccessible::Canvas);
    EXPECT_EQ(canvas->text(QAccessible::Name), QStringLiteral("Canvas"));
    EXPECT_TRUE(canvas->state().focusable);
}

TEST_F(AccessibleCanvas, TellsToolZoomLayerAndSelection) {
    EXPECT_EQ(description(),
              QStringLiteral("Paintbrush. Zoom 200%. Layer Background. No selection"));
    projects->editActiveProject([](model::PaintProject& project) {
        project.layers.front().isLocked = true;
        project.layers.front().isVisible = false;
        project.isCanvasSelected = true;
        project.pixelSelection = model::PixelSelection{3.0, 4.0, 50.0, 60.0, std::nullopt};
    });
    projects->editSettings([](model::PaintAppSettings& settings) {
        settings.selectedTool = PaintTool::eraser;
        settings.zoomScale = 0.333;
    });
    EXPECT_EQ(description(), QStringLiteral("Eraser. Zoom 33%. Layer Background, hidden, locked. "
                                            "Selection at 3, 4, 50 by 60"));
    projects->closeProject(*projects->activeProjectID());
    EXPECT_EQ(description(), QString());
}

TEST_F(AccessibleCanvas, TellsTheKeyboardsPixelAndTheColorThere) {
    key(Qt::Key_Right, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(description(), QStringLiteral("Pixel 101, 50, #ffffff. Paintbrush. Zoom 200%. "
                                            "Layer Background. No selection"));
    key(Qt::Key_Space);
    EXPECT_EQ(description(), QStringLiteral("Pixel 101, 50, #ffffff. Paintbrush, pressed. "
                                            "Zoom 200%. Layer Background. No selection"));
    key(Qt::Key_Space);
    EXPECT_TRUE(description().startsWith(QStringLiteral("Pixel 101, 50, #ff0000. Paintbrush. ")));
}

TEST_F(AccessibleCanvas, AnnouncesAChangeOnceItRests) {
    projects->editSettings([](auto& settings) { settings.selectedTool = PaintTool::eraser; });
    EXPECT_TRUE(announced.empty());
    EXPECT_TRUE(isAnnounced(QStringLiteral("Eraser. Zoom 200%. Layer Background. No selection")));
    const std::size_t before = announced.size();
    for (int i = 0; i < 5; ++i) key(Qt::Key_Right, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(
        isAnnounced(QStringLiteral("Pixel 105, 50, #ffffff. Eraser. Zoom 200%. "
                                   "Layer Background. No selection")));
    EXPECT_EQ(announced.size(), before + 1);
    key(Qt::Key_Space);
    EXPECT_TRUE(
        isAnnounced(QStringLiteral("Pixel 105, 50, #ffffff. Eraser, pressed. Zoom 200%. "
                                   "Layer Background. No selection")));
    projects->selectAllCanvas();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return !announced.empty() &&
               announced.back().endsWith(QStringLiteral("Selection at 0, 0, 200 by 100"));
    }));
}

TEST_F(AccessibleCanvas, SaysNothingWhenNothingHasChanged) {
    projects->editSettings([](auto& settings) { settings.selectedTool = PaintTool::eraser; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return !announced.empty(); }));
    const std::size_t before = announced.size();
    projects->editSettings([](auto& settings) { settings.brushSize = 30.0; });
    QTest::qWait(250);
    EXPECT_EQ(announced.size(), before);
}

TEST_F(AccessibleCanvas, SaysNothingWhenNobodyListens) {
    QTest::qWait(250);
    announced.clear();
    QAccessible::setActive(false);
    projects->editSettings([](auto& settings) { settings.selectedTool = PaintTool::eraser; });
    QTest::qWait(250);
    EXPECT_TRUE(announced.empty());
}

class ShownColor : public testing::Test {
protected:
    ShownColor() {
        project.canvasWidth = 4.0;
        project.canvasHeight = 3.0;
    }

    static model::PaintLayer layerOf(const QColor& color, double opacity = 1.0) {
        auto image = raster::LayerRasterService::transparentImage(4.0, 3.0);
        image.paintTarget().fill(color);
        model::PaintLayer layer;
        layer.id = QUuid::createUuid();
        layer.bitmapPNGData = raster::encodedImage(image);
        layer.opacity = opacity;
        return layer;
    }

    model::PaintProject project;
};

TEST_F(ShownColor, OfATranslucentPixelIsWhatWasPainted) {
    project.layers = {layerOf(QColor(255, 0, 0, 128))};
    EXPECT_EQ(shownColor(project, {1.5, 1.5}), (model::ColorValue{1.0, 0.0, 0.0, 128 / 255.0F}));
    project.layers = {layerOf(Qt::white), layerOf(QColor(255, 0, 0, 128))};
    EXPECT_EQ(shownColor(project, {1.5, 1.5}),
              (model::ColorValue{1.0, 127 / 255.0F, 127 / 255.0F, 1.0}));
}

TEST_F(ShownColor, IsThatOfTheLayersOneOverTheOther) {
    EXPECT_FALSE(shownColor(project, {1.0, 1.0}));
    project.layers = {layerOf(QColor(255, 0, 0), 1.0), layerOf(QColor(0, 0, 255), 0.2)};
    EXPECT_EQ(shownColor(project, {1.5, 1.5}), (model::ColorValue{204 / 255.0F, 0.0, 51 / 255.0F}));
    project.layers.front().isVisible = false;
    const auto faint = shownColor(project, {3.9, 2.9});
    ASSERT_TRUE(faint);
    EXPECT_NEAR(faint->alpha, 0.2, 1e-3);
    EXPECT_EQ(faint->blue, 1.0);
    EXPECT_FALSE(shownColor(project, {4.0, 1.0}));
    EXPECT_FALSE(shownColor(project, {-0.1, 1.0}));
    auto floating = raster::LayerRasterService::transparentImage(2.0, 2.0);
    floating.paintTarget().fill(Qt::green);
    project.floatingSelection = model::FloatingPixelSelection{raster::encodedImage(floating), 2.0,
                                                              2.0, project.layers.back().id};
    project.layers.back().opacity = 1.0;
    project.pixelSelection = model::PixelSelection{2.0, 1.0, 2.0, 2.0, std::nullopt};
    EXPECT_EQ(shownColor(project, {2.5, 1.5}), (model::ColorValue{0.0, 1.0, 0.0, 1.0}));
    EXPECT_EQ(shownColor(project, {1.5, 1.5}), (model::ColorValue{0.0, 0.0, 1.0, 1.0}));
}

} // namespace
} // namespace quillabrae::canvas
