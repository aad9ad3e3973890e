// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFixture.h"

namespace quillabrae::canvas {
namespace {

class Pan : public CanvasFixture {
protected:
    Pan() { host.tools.selectedTool = model::PaintTool::pan; }

    void drag(QPointF translation) {
        view.dragChanged(Surface::interactiveView,
                         DragValue::between({50.0, 50.0}, QPointF(50.0, 50.0) + translation));
    }
    void release() {
        view.dragEnded(Surface::interactiveView, DragValue::between({50.0, 50.0}, {50.0, 50.0}));
    }
};

TEST_F(Pan, TheDocumentFollowsTheHand) {
    const QPointF start = scroller.origin;
    drag({0.0, 0.0});
    EXPECT_EQ(scroller.origin, start);
    drag({10.0, -20.0});
    EXPECT_EQ(scroller.origin, start + QPointF(-10.0, 20.0));
    drag({3.0, 4.0});
    EXPECT_EQ(scroller.origin, start - QPointF(3.0, 4.0));
}

TEST_F(Pan, EachDragStartsFromWhereTheLastEnded) {
    drag({10.0, 0.0});
    release();
    const QPointF start = scroller.origin;
    drag({1.0, 0.0});
    EXPECT_EQ(scroller.origin, start - QPointF(1.0, 0.0));
}

TEST_F(Pan, TheDocumentDoesNotLeaveTheViewport) {
    drag({9000.0, 9000.0});
    EXPECT_EQ(scroller.origin, QPointF(0.0, 0.0));
    drag({-9000.0, -9000.0});
    EXPECT_EQ(scroller.origin,
              QPointF(scroller.document.width() - 900.0, scroller.document.height() - 700.0));
}

TEST_F(Pan, ADocumentSmallerThanTheViewportStaysPut) {
    scroller.clip = {3000.0, 3000.0};
    view.setViewportSize(scroller.clip);
    drag({-50.0, 70.0});
    EXPECT_EQ(scroller.origin, QPointF(0.0, 0.0));
}

TEST_F(Pan, WithoutAScrollerNothingHappens) {
    const QPointF start = scroller.origin;
    view.setScroller(nullptr);
    drag({10.0, 10.0});
    EXPECT_EQ(scroller.origin, start);
}

TEST_F(Pan, TheHandDoesNothingInTheWorkspace) {
    const QPointF start = scroller.origin;
    view.dragChanged(Surface::workspace, DragValue::between({5.0, 5.0}, {50.0, 50.0}));
    EXPECT_EQ(scroller.origin, start);
}

TEST_F(Pan, PanningWithAnotherToolDrawsNothing) {
    host.tools.selectedTool = model::PaintTool::paintbrush;
    const QPointF start = scroller.origin;
    view.panChanged({10.0, 20.0});
    view.panEnded();
    EXPECT_EQ(scroller.origin, start - QPointF(10.0, 20.0));
    EXPECT_EQ(host.edits, 0);
}

} // namespace
} // namespace quillabrae::canvas
