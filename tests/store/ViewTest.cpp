// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreTest.h"

#include <QSignalSpy>

namespace quillabrae::store {
namespace {

using CanvasView = StoreTest;

TEST_F(CanvasView, AFitWaitsForTheViewportAndThenSaysNothing) {
    const auto store = makeStore();
    store->createUntitledProject(400, 300, 96);
    const QUuid before = store->zoomToFitRequestID();
    EXPECT_EQ(store->settings().zoomScale, 1.0);
    EXPECT_FALSE(store->performZoomToFitCanvas(StatusUpdate::shown));

    store->setCanvasViewportSize({980, 1000});
    EXPECT_EQ(store->settings().zoomScale, 2.0);
    EXPECT_NE(store->zoomToFitRequestID(), before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Untitled"));

    const QUuid once = store->zoomToFitRequestID();
    store->setCanvasViewportSize({500, 500});
    EXPECT_EQ(store->zoomToFitRequestID(), once);
    EXPECT_EQ(store->settings().zoomScale, 2.0);
}

TEST_F(CanvasView, AFitForAnotherProjectWaitsUntilThatOneIsActive) {
    const auto store = makeStore();
    const QUuid first = makeProject(*store);
    const QUuid second = makeProject(*store);
    store->setActiveProjectID(first);
    store->zoomToFitCanvasWhenReady(second);
    const QUuid before = store->zoomToFitRequestID();
    store->setCanvasViewportSize({900, 700});
    EXPECT_EQ(store->zoomToFitRequestID(), before);
    store->setActiveProjectID(second);
    store->setCanvasViewportSize({900, 700});
    EXPECT_NE(store->zoomToFitRequestID(), before);
}

TEST_F(CanvasView, FitsStayWithinTheLimitsOfTheZoom) {
    const auto store = makeStore();
    store->setCanvasViewportSize({4000, 4000});
    store->createUntitledProject(1, 1, 96);
    EXPECT_EQ(store->settings().zoomScale, 64.0);
    store->setCanvasViewportSize({200, 200});
    store->editActiveProject([](model::PaintProject& project) {
        project.canvasWidth = 30'000;
        project.canvasHeight = 10;
    });
    EXPECT_TRUE(store->performZoomToFitCanvas(StatusUpdate::shown));
    EXPECT_EQ(store->settings().zoomScale, 0.1);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Zoomed to fit canvas"));
}

TEST_F(CanvasView, AFitNeedsAProject) {
    const auto store = makeStore();
    store->setCanvasViewportSize({900, 700});
    EXPECT_FALSE(store->performZoomToFitCanvas(StatusUpdate::shown));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
}

TEST_F(CanvasView, ZoomStepsAreFactorsWithinTheLimits) {
    const auto store = makeStore();
    store->zoomIn();
    EXPECT_EQ(store->settings().zoomScale, 1.25);
    store->zoomOut();
    EXPECT_EQ(store->settings().zoomScale, 1.0);
    for (int i = 0; i < 40; ++i) store->zoomIn();
    EXPECT_EQ(store->settings().zoomScale, 64.0);
    for (int i = 0; i < 60; ++i) store->zoomOut();
    EXPECT_EQ(store->settings().zoomScale, 0.1);
    EXPECT_EQ(makeStore()->settings().zoomScale, 0.1);
}

TEST_F(CanvasView, TheCursorIsInWholePixelsAndTellsOnlyOfNewOnes) {
    const auto store = makeStore();
    QSignalSpy changes(store.get(), &ProjectStore::canvasCursorPositionChanged);
    store->setCanvasCursorPosition(QPointF(3.9, -0.1));
    EXPECT_EQ(store->canvasCursorPosition(), (model::CanvasPoint{3, -1}));
    store->setCanvasCursorPosition(QPointF(3.2, -0.9));
    EXPECT_EQ(changes.count(), 1);
    store->setCanvasCursorPosition(std::nullopt);
    store->setCanvasCursorPosition(std::nullopt);
    EXPECT_EQ(store->canvasCursorPosition(), std::nullopt);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(CanvasView, ThePixelGridIsSwitchedAndRemembered) {
    const auto store = makeStore();
    store->togglePixelGrid();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Pixel grid on"));
    EXPECT_TRUE(makeStore()->settings().showsPixelGrid);
    store->togglePixelGrid();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Pixel grid off"));
    EXPECT_FALSE(makeStore()->settings().showsPixelGrid);
}

} // namespace
} // namespace quillabrae::store
