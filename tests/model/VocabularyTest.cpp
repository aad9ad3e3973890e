// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CanvasAnchor.h"
#include "model/CanvasShape.h"
#include "model/CanvasTextAlignment.h"
#include "model/PaintTool.h"
#include "model/ShapeDrawingMode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace quillabrae::model {
namespace {

using testing::ElementsAre;

// The tools for which a flag is true, in the order of the table.
std::vector<PaintTool> toolsWith(bool (*flag)(PaintTool)) {
    std::vector<PaintTool> result;
    for (const PaintTool tool : allPaintTools()) {
        if (flag(tool)) result.push_back(tool);
    }
    return result;
}

template <typename Cases, typename FromRawText>
void expectRawTextsToBeTheirOwn(const Cases& cases, FromRawText fromRawText) {
    for (const auto value : cases) EXPECT_EQ(fromRawText(rawText(value)), value);
    EXPECT_EQ(fromRawText(QString()), std::nullopt);
    EXPECT_EQ(fromRawText(rawText(cases[0]).toUpper()), std::nullopt);
    EXPECT_EQ(fromRawText(rawText(cases[0]) + QLatin1Char(' ')), std::nullopt);
}

TEST(Vocabularies, ACaseIsFoundByItsRawTextAndNoOther) {
    expectRawTextsToBeTheirOwn(allPaintTools(), paintToolFromRawText);
    expectRawTextsToBeTheirOwn(allCanvasShapes(), canvasShapeFromRawText);
    expectRawTextsToBeTheirOwn(allShapeDrawingModes(), shapeDrawingModeFromRawText);
    expectRawTextsToBeTheirOwn(allCanvasTextAlignments(), canvasTextAlignmentFromRawText);
    expectRawTextsToBeTheirOwn(allCanvasAnchors(), canvasAnchorFromRawText);
}

TEST(PaintTool, ItsStoredFormIsItsRawText) {
    EXPECT_EQ(paintToolFromRawText(u"brush"), PaintTool::paintbrush);
    EXPECT_EQ(rawText(PaintTool::paintbrush), QStringLiteral("brush"));
    EXPECT_EQ(rawText(PaintTool::rectangleSelect), QStringLiteral("select"));
    EXPECT_EQ(rawText(PaintTool::pan), QStringLiteral("hand"));
    EXPECT_EQ(rawText(PaintTool::paintBucket), QStringLiteral("fill"));
    EXPECT_EQ(rawText(PaintTool::lineCurve), QStringLiteral("line"));
}

TEST(PaintTool, ACaseNameThatDiffersFromTheStoredFormIsNoTool) {
    for (const char16_t* name :
         {u"paintbrush", u"rectangleSelect", u"pan", u"paintBucket", u"lineCurve"})
        EXPECT_EQ(paintToolFromRawText(name), std::nullopt);
}

TEST(PaintTool, FlagsAreTrueForTheirToolsOnly) {
    using enum PaintTool;
    EXPECT_THAT(toolsWith(drawsContinuousStroke),
                ElementsAre(paintbrush, eraser, pencil, cloneStamp, recolor));
    EXPECT_THAT(toolsWith(drawsFromEndpoints),
                ElementsAre(gradient, lineCurve, shapes, rectangle, ellipse));
    EXPECT_THAT(toolsWith(constrainsEndpointAspectRatio), ElementsAre(shapes, rectangle, ellipse));
    EXPECT_THAT(toolsWith(snapsEndpointAngle), ElementsAre(gradient, lineCurve));
    EXPECT_THAT(toolsWith(usesHardnessControl), ElementsAre(eraser, pencil, lineCurve));
}

TEST(PaintTool, TheLegacyToolsAreReadLikeAnyOther) {
    EXPECT_EQ(paintToolFromRawText(u"rectangle"), PaintTool::rectangle);
    EXPECT_EQ(paintToolFromRawText(u"ellipse"), PaintTool::ellipse);
    EXPECT_EQ(helpDescription(PaintTool::rectangle),
              QStringLiteral("Legacy rectangle outline tool."));
}

TEST(PaintTool, EachHasTitleSymbolAndHelp) {
    for (const PaintTool tool : allPaintTools()) {
        EXPECT_FALSE(title(tool).isEmpty());
        EXPECT_FALSE(symbolName(tool).isEmpty());
        EXPECT_TRUE(helpDescription(tool).endsWith(QLatin1Char('.')));
    }
    EXPECT_EQ(title(PaintTool::lineCurve), QStringLiteral("Line/Curve"));
    EXPECT_EQ(symbolName(PaintTool::pan), QStringLiteral("hand.draw"));
}

TEST(CanvasShape, TheTrianglesShareASymbolAndAreToldApartByTheirTitles) {
    EXPECT_EQ(symbolName(CanvasShape::triangle), symbolName(CanvasShape::rightTriangle));
    EXPECT_NE(title(CanvasShape::triangle), title(CanvasShape::rightTriangle));
}

TEST(ShapeDrawingMode, SaysWhatItIncludes) {
    EXPECT_TRUE(includesFill(ShapeDrawingMode::fill));
    EXPECT_FALSE(includesOutline(ShapeDrawingMode::fill));
    EXPECT_FALSE(includesFill(ShapeDrawingMode::outline));
    EXPECT_TRUE(includesOutline(ShapeDrawingMode::outline));
    EXPECT_TRUE(includesFill(ShapeDrawingMode::fillAndOutline));
    EXPECT_TRUE(includesOutline(ShapeDrawingMode::fillAndOutline));
}

TEST(CanvasAnchor, StandsInReadingOrder) {
    using enum CanvasAnchor;
    EXPECT_THAT(allCanvasAnchors(), ElementsAre(topLeft, top, topRight, left, center, right,
                                                bottomLeft, bottom, bottomRight));
}

} // namespace
} // namespace quillabrae::model
