// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionHandle.h"

#include <gtest/gtest.h>

namespace quillabrae::canvas {
namespace {

using enum SelectionHandle;

constexpr QRectF rect(10.0, 20.0, 40.0, 20.0);

TEST(SelectionHandle, StandsOnItsCornerOrInTheMiddleOfItsEdge) {
    EXPECT_EQ(handlePoint(topLeft, rect), QPointF(10.0, 20.0));
    EXPECT_EQ(handlePoint(top, rect), QPointF(30.0, 20.0));
    EXPECT_EQ(handlePoint(topRight, rect), QPointF(50.0, 20.0));
    EXPECT_EQ(handlePoint(right, rect), QPointF(50.0, 30.0));
    EXPECT_EQ(handlePoint(bottomRight, rect), QPointF(50.0, 40.0));
    EXPECT_EQ(handlePoint(bottom, rect), QPointF(30.0, 40.0));
    EXPECT_EQ(handlePoint(bottomLeft, rect), QPointF(10.0, 40.0));
    EXPECT_EQ(handlePoint(left, rect), QPointF(10.0, 30.0));
}

TEST(SelectionHandle, TakesAPressInTheSquareAroundIt) {
    EXPECT_EQ(selectionDragMode({4.0, 14.0}, rect), SelectionDragMode{topLeft});
    EXPECT_EQ(selectionDragMode({55.9, 45.9}, rect), SelectionDragMode{bottomRight});
    EXPECT_EQ(selectionDragMode({30.0, 30.0}, rect), SelectionDragMode{});
    EXPECT_EQ(selectionDragMode({56.0, 46.0}, rect), std::nullopt);
    EXPECT_EQ(selectionDragMode({3.9, 30.0}, rect), std::nullopt);
}

TEST(SelectionHandle, TheFirstOfSeveralTakesThePress) {
    const QRectF tiny(10.0, 10.0, 4.0, 4.0);
    EXPECT_EQ(selectionDragMode({12.0, 12.0}, tiny), SelectionDragMode{topLeft});
    EXPECT_EQ(selectionDragMode({17.0, 12.0}, tiny), SelectionDragMode{top});
    EXPECT_EQ(selectionDragMode({19.0, 12.0}, tiny), SelectionDragMode{topRight});
}

struct ResizeRow {
    SelectionHandle handle;
    QRectF free;
    QRectF kept;
};

class Resize : public testing::TestWithParam<ResizeRow> {};

TEST_P(Resize, MovesItsOwnEdges) {
    const QPointF translation(10.0, 4.0);
    EXPECT_EQ(resizedRect(rect, GetParam().handle, translation, AspectRatio::free),
              GetParam().free);
    EXPECT_EQ(resizedRect(rect, GetParam().handle, translation, AspectRatio::kept),
              GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(
    EachHandle, Resize,
    testing::Values(ResizeRow{topLeft, {20.0, 24.0, 30.0, 16.0}, {20.0, 25.0, 30.0, 15.0}},
                    ResizeRow{top, {10.0, 24.0, 40.0, 16.0}, {14.0, 24.0, 32.0, 16.0}},
                    ResizeRow{topRight, {10.0, 24.0, 50.0, 16.0}, {10.0, 15.0, 50.0, 25.0}},
                    ResizeRow{right, {10.0, 20.0, 50.0, 20.0}, {10.0, 17.5, 50.0, 25.0}},
                    ResizeRow{bottomRight, {10.0, 20.0, 50.0, 24.0}, {10.0, 20.0, 50.0, 25.0}},
                    ResizeRow{bottom, {10.0, 20.0, 40.0, 24.0}, {6.0, 20.0, 48.0, 24.0}},
                    ResizeRow{bottomLeft, {20.0, 20.0, 30.0, 24.0}, {20.0, 20.0, 30.0, 15.0}},
                    ResizeRow{left, {20.0, 20.0, 30.0, 20.0}, {20.0, 22.5, 30.0, 15.0}}));

TEST(SelectionHandle, AnEdgeStopsOnePixelShortOfTheOpposite) {
    EXPECT_EQ(resizedRect(rect, topLeft, {100.0, 100.0}, AspectRatio::free),
              QRectF(49.0, 39.0, 1.0, 1.0));
    EXPECT_EQ(resizedRect(rect, bottomRight, {-100.0, -100.0}, AspectRatio::free),
              QRectF(10.0, 20.0, 1.0, 1.0));
}

TEST(SelectionHandle, ADragRoundsToWholePixels) {
    EXPECT_EQ(draggedRect(rect, SelectionDragMode{}, {0.5, -0.4}, AspectRatio::free),
              QRectF(11.0, 20.0, 40.0, 20.0));
    EXPECT_EQ(draggedRect({-2.5, 0.0, 0.2, 3.5}, SelectionDragMode{}, {}, AspectRatio::free),
              QRectF(-3.0, 0.0, 1.0, 4.0));
}

TEST(SelectionHandle, TruncationCutsTowardsZero) {
    const model::PixelSelection none;
    const auto selection = truncatedSelection(none, {-2.7, 3.9, 0.4, 5.9});
    EXPECT_EQ(rectOf(selection), QRectF(-2.0, 3.0, 1.0, 5.0));
}

} // namespace
} // namespace quillabrae::canvas
