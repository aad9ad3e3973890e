// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngCodec.h"
#include "store/CommandTest.h"

namespace quillabrae::store {
namespace {

using model::CanvasAnchor;
using model::PixelSelection;

class CanvasCommands : public CommandTest {
protected:
    /// A second layer with a red rectangle on it, selected.
    void addRed(const QRect& rect) {
        store->addLayer();
        paintRed(project().layers.size() - 1, rect);
    }
    void resizeCanvas(double width, double height, CanvasAnchor anchor) {
        store->resizeActiveCanvas({width, height, 96, anchor});
    }
    QSizeF canvasSize() const { return {project().canvasWidth, project().canvasHeight}; }
    void floatAndRecord() {
        floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
        edit(*store, QStringLiteral("Paste"));
    }
    void expectNoSelection() {
        EXPECT_FALSE(project().isCanvasSelected);
        EXPECT_FALSE(project().pixelSelection);
        EXPECT_FALSE(project().floatingSelection);
    }
};

TEST_F(CanvasCommands, WithoutAProjectTheyDoNothing) {
    store->closeProject(id);
    const QString status = store->statusMessage();
    store->resizeActiveImage({4, 4, 96, CanvasAnchor::center});
    resizeCanvas(4, 4, CanvasAnchor::center);
    store->trimTransparentWhitespace();
    store->invertActiveImage();
    store->flipSelectedLayer(FlipDirection::horizontal);
    store->rotateZoomSelectedLayer({90, 100});
    EXPECT_EQ(store->statusMessage(), status);
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
}

TEST_F(CanvasCommands, ResizingTheImageScalesEveryLayer) {
    addRed({2, 1, 3, 2});
    store->addLayer();
    store->editActiveProject([](model::PaintProject& edited) {
        edited.layers[0].isLocked = true;
        edited.layers[1].isVisible = false;
        edited.layers[1].opacity = 0.25;
    });
    const ResizeDialogResult result{16, 18, 300.5, CanvasAnchor::topLeft};
    store->resizeActiveImage(result);
    EXPECT_EQ(canvasSize(), QSizeF(16, 18));
    EXPECT_EQ(project().resolutionDPI, 300.5);
    EXPECT_EQ(redPixels(1), QRect(4, 3, 6, 6));
    EXPECT_EQ(project().layers[1].opacity, 0.25);
    EXPECT_FALSE(project().layers[1].isVisible);
    ASSERT_TRUE(project().layers[2].bitmapPNGData);
    EXPECT_EQ(raster::pngPixelSize(*project().layers[2].bitmapPNGData), QSize(16, 18));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Resized image to 16 x 18"));
    EXPECT_EQ(store->lastRepeatableAction(),
              RepeatablePaintAction(RepeatableActions::ResizeImage{result}));
    expectLastEntry(QStringLiteral("Resize"), QStringLiteral("arrow.up.left.and.arrow.down.right"));
    EXPECT_EQ(work.titles, QStringList(QStringLiteral("Resizing image")));
}

TEST_F(CanvasCommands, NoSideIsResizedBelowOne) {
    store->resizeActiveImage({0, -3, 96, CanvasAnchor::center});
    EXPECT_EQ(canvasSize(), QSizeF(1, 1));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Resized image to 1 x 1"));
    resizeCanvas(0, 2, CanvasAnchor::center);
    EXPECT_EQ(canvasSize(), QSizeF(1, 2));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Changed canvas to 1 x 2"));
}

TEST_F(CanvasCommands, ResizingDiscardsFloatingPixelsAndUndoBringsThemBack) {
    floatAndRecord();
    const model::PaintProject before = project();
    store->resizeActiveImage({16, 12, 96, CanvasAnchor::center});
    expectNoSelection();
    EXPECT_TRUE(redPixels(0).isNull());
    store->undo(id);
    EXPECT_EQ(project(), before);
    resizeCanvas(9, 9, CanvasAnchor::center);
    expectNoSelection();
    EXPECT_TRUE(redPixels(0).isNull());
    store->undo(id);
    EXPECT_EQ(project(), before);
}

TEST_F(CanvasCommands, ASizeThatNoPictureHasIsRefused) {
    const QString tooLarge = QStringLiteral(" failed: the image would be too large");
    expectNothing([&] { store->resizeActiveImage({1e6, 2, 96, CanvasAnchor::center}); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Resize") + tooLarge);
    expectNothing([&] { resizeCanvas(30'000, 30'000, CanvasAnchor::center); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Canvas size") + tooLarge);
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
}

struct AnchorCase {
    CanvasAnchor anchor;
    QPoint place;
};

class CanvasAnchors : public CanvasCommands, public testing::WithParamInterface<AnchorCase> {};

TEST_P(CanvasAnchors, ThePixelsKeepTheirPlaceAtTheAnchor) {
    store->editActiveProject(
        [](model::PaintProject& edited) { edited.layers[0].bitmapPNGData.reset(); });
    paintRed(0, {0, 0, 8, 6});
    resizeCanvas(12, 16, GetParam().anchor);
    EXPECT_EQ(redPixels(0), QRect(GetParam().place, QSize(8, 6)));
    EXPECT_EQ(store->settings().lastCanvasResizeAnchor, GetParam().anchor);
    resizeCanvas(8, 6, GetParam().anchor);
    EXPECT_EQ(redPixels(0), QRect(0, 0, 8, 6));
    resizeCanvas(4, 2, GetParam().anchor);
    EXPECT_EQ(redPixels(0), QRect(0, 0, 4, 2));
}

INSTANTIATE_TEST_SUITE_P(All, CanvasAnchors,
                         testing::Values(AnchorCase{CanvasAnchor::topLeft, {0, 0}},
                                         AnchorCase{CanvasAnchor::top, {2, 0}},
                                         AnchorCase{CanvasAnchor::topRight, {4, 0}},
                                         AnchorCase{CanvasAnchor::left, {0, 5}},
                                         AnchorCase{CanvasAnchor::center, {2, 5}},
                                         AnchorCase{CanvasAnchor::right, {4, 5}},
                                         AnchorCase{CanvasAnchor::bottomLeft, {0, 10}},
                                         AnchorCase{CanvasAnchor::bottom, {2, 10}},
                                         AnchorCase{CanvasAnchor::bottomRight, {4, 10}}));

TEST_F(CanvasCommands, ACanvasShrunkAtItsBottomRightKeepsThatCorner) {
    addRed({6, 5, 2, 1});
    resizeCanvas(3, 2, CanvasAnchor::bottomRight);
    EXPECT_EQ(redPixels(1), QRect(1, 1, 2, 1));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Changed canvas to 3 x 2"));
    EXPECT_EQ(store->lastRepeatableAction(), RepeatablePaintAction(RepeatableActions::ResizeCanvas{
                                                 {3, 2, 96, CanvasAnchor::bottomRight}}));
    expectLastEntry(QStringLiteral("Canvas Size"), QStringLiteral("rectangle.expand.vertical"));
}

TEST_F(CanvasCommands, AHalfPixelOfRoomIsNotRounded) {
    // Nine pixels for eight, in the middle: the old ones lie from 0.5 to 8.5 and show at the pixels
    // whose centres they reach.
    addRed({0, 0, 8, 6});
    resizeCanvas(9, 6, CanvasAnchor::center);
    EXPECT_EQ(redPixels(1), QRect(0, 0, 8, 6));
}

TEST_F(CanvasCommands, CancelLeavesTheProjectAsItWas) {
    addRed({1, 1, 2, 2});
    store->addLayer();
    work.isCancelled = true;
    expectNothing([&] { store->resizeActiveImage({16, 12, 96, CanvasAnchor::center}); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Resize cancelled"));
    expectNothing([&] { resizeCanvas(16, 12, CanvasAnchor::center); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Canvas size cancelled"));
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
    EXPECT_EQ(store->settings().lastCanvasResizeAnchor, CanvasAnchor::left);
}

TEST_F(CanvasCommands, WorkOnAProjectThatHasChangedMeanwhileIsDropped) {
    work.meanwhile = [&] { store->addLayer(); };
    store->resizeActiveImage({16, 12, 96, CanvasAnchor::center});
    EXPECT_EQ(canvasSize(), QSizeF(8, 6));
    EXPECT_EQ(project().layers.size(), 2U);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Resize cancelled"));
    work.meanwhile = [&] { store->closeProject(id); };
    resizeCanvas(16, 12, CanvasAnchor::center);
    EXPECT_EQ(store->openProjects().size(), 0U);
}

TEST_F(CanvasCommands, WorkIsPutInTheProjectItBeganWith) {
    work.meanwhile = [&] {
        work.meanwhile = nullptr;
        makeProject(*store);
    };
    store->resizeActiveImage({16, 12, 96, CanvasAnchor::center});
    EXPECT_EQ(canvasSize(), QSizeF(16, 12));
    EXPECT_EQ(store->activeProject()->canvasWidth, 8);
    EXPECT_EQ(store->history(id).entries.back().title, QStringLiteral("Resize"));
}

TEST_F(CanvasCommands, InvertInvertsTheLayer) {
    store->invertActiveImage();
    EXPECT_EQ(pixel(0, 3, 3), QColor(Qt::black));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Inverted selected layer"));
    EXPECT_EQ(store->lastRepeatableAction(),
              RepeatablePaintAction(RepeatableActions::InvertImage{}));
    expectLastEntry(QStringLiteral("Invert"), QStringLiteral("circle.lefthalf.filled"));
}

TEST_F(CanvasCommands, InvertInvertsTheSelectionAlone) {
    selectRect({2, 1, 3, 2});
    store->invertActiveImage();
    EXPECT_EQ(pixel(0, 2, 1), QColor(Qt::black));
    EXPECT_EQ(pixel(0, 1, 1), QColor(Qt::white));
    EXPECT_EQ(pixel(0, 5, 2), QColor(Qt::white));
    EXPECT_TRUE(project().pixelSelection);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Inverted selected area"));
}

TEST_F(CanvasCommands, InvertPutsFloatingPixelsDownAndInvertsWhereTheyWere) {
    floatRed(2, 2, PixelSelection{3, 1, 2, 2, std::nullopt});
    store->invertActiveImage();
    EXPECT_EQ(pixel(0, 3, 1), QColor(Qt::cyan));
    EXPECT_EQ(pixel(0, 5, 1), QColor(Qt::white));
    expectNoSelection();
    EXPECT_EQ(titles(*store, id),
              QStringList({QStringLiteral("New Project"), QStringLiteral("Invert")}));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Inverted selected area"));
}

TEST_F(CanvasCommands, InvertSaysWhyItDoesNot) {
    lock(0);
    expectNothing([&] { store->invertActiveImage(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Selected layer is locked"));
    store->addLayer();
    expectNothing([&] { store->invertActiveImage(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Nothing to invert"));
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
    selectNoLayer();
    store->setStatusMessage(QString());
    expectNothing([&] { store->invertActiveImage(); });
    EXPECT_EQ(store->statusMessage(), QString());
}

TEST_F(CanvasCommands, InvertThatFindsNothingHasPutFloatingPixelsDownAllTheSame) {
    store->addLayer();
    // On the layer below; the selected one is empty.
    floatRed(2, 2, std::nullopt);
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection->layerID = edited.layers[0].id;
    });
    const QDateTime before = project().lastModified;
    store->invertActiveImage();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Nothing to invert"));
    EXPECT_EQ(redPixels(0), QRect(0, 0, 2, 2));
    EXPECT_GT(project().lastModified, before);
    EXPECT_EQ(titles(*store, id).size(), 2);
}

TEST_F(CanvasCommands, FlipMirrorsTheLayer) {
    addRed({1, 1, 2, 2});
    store->flipSelectedLayer(FlipDirection::horizontal);
    EXPECT_EQ(redPixels(1), QRect(5, 1, 2, 2));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Flip Horizontal applied"));
    expectLastEntry(QStringLiteral("Flip Horizontal"),
                    QStringLiteral("arrow.left.and.right.righttriangle.left.righttriangle.right"));
    store->flipSelectedLayer(FlipDirection::vertical);
    EXPECT_EQ(redPixels(1), QRect(5, 3, 2, 2));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Flip Vertical applied"));
    EXPECT_EQ(store->lastRepeatableAction(),
              RepeatablePaintAction(RepeatableActions::FlipLayer{FlipDirection::vertical}));
    expectLastEntry(QStringLiteral("Flip Vertical"),
                    QStringLiteral("arrow.up.and.down.righttriangle.up.righttriangle.down"));
}

TEST_F(CanvasCommands, FlipMirrorsTheSelectionWithinItself) {
    addRed({1, 1, 2, 2});
    selectRect({1, 0, 4, 6});
    store->flipSelectedLayer(FlipDirection::horizontal);
    EXPECT_EQ(redPixels(1), QRect(3, 1, 2, 2));
}

TEST_F(CanvasCommands, FlipAndRotationOfALockedOrMissingLayerAreSilent) {
    const QString status = store->statusMessage();
    lock(0);
    const auto both = [&] { store->flipSelectedLayer(FlipDirection::horizontal); };
    expectNothing(both);
    selectNoLayer();
    expectNothing(both);
    EXPECT_EQ(store->statusMessage(), status);
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
}

TEST_F(CanvasCommands, ASelectionOutsideTheCanvasIsNothingToFlipOrRotate) {
    selectRect({20, 20, 4, 4});
    expectNothing([&] {
        store->flipSelectedLayer(FlipDirection::vertical);
        store->rotateZoomSelectedLayer({90, 100});
    });
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
}

TEST_F(CanvasCommands, RotationTurnsTheSelectionClockwise) {
    addRed({2, 1, 2, 1});
    selectRect({2, 1, 4, 4});
    store->rotateZoomSelectedLayer({90, 100});
    EXPECT_EQ(redPixels(1), QRect(5, 1, 1, 2));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Rotate / Zoom applied"));
    EXPECT_EQ(store->lastRepeatableAction(),
              RepeatablePaintAction(RepeatableActions::RotateZoom{{90, 100}}));
    expectLastEntry(QStringLiteral("Rotate / Zoom"), QStringLiteral("rotate.3d"));
}

TEST_F(CanvasCommands, UndoAndRedoTakeEveryCommandBackAndForth) {
    addRed({2, 1, 2, 1});
    store->invertActiveImage();
    store->flipSelectedLayer(FlipDirection::vertical);
    store->rotateZoomSelectedLayer({180, 100});
    store->resizeActiveImage({16, 12, 96, CanvasAnchor::center});
    resizeCanvas(20, 12, CanvasAnchor::left);
    store->selectAllCanvas();
    store->dropSelection();
    ASSERT_EQ(store->history(id).entries.size(), 9U);
    expectUndoAndRedoThroughHistory();
}

} // namespace
} // namespace quillabrae::store
