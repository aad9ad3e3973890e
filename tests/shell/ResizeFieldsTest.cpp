// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/ResizeFields.h"

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

using model::CanvasAnchor;

ResizeFields fieldsFor(double width, double height, double resolution = 96.0) {
    return ResizeFields(
        {ResizeDialogMode::image, {width, height}, resolution, CanvasAnchor::bottomLeft});
}

ResizeFields absoluteFieldsFor(double width, double height, double resolution = 96.0) {
    ResizeFields fields = fieldsFor(width, height, resolution);
    fields.setBasis(ResizeBasis::absolute);
    return fields;
}

TEST(ResizeFields, StartWithTheCanvasAsItIs) {
    const ResizeFields fields = fieldsFor(900, 620, 72);
    EXPECT_EQ(fields.basis(), ResizeBasis::percentage);
    EXPECT_EQ(fields.percentage(), 100.0);
    EXPECT_TRUE(fields.maintainsAspectRatio());
    EXPECT_EQ(fields.resolutionUnit(), ResolutionUnit::pixelsPerInch);
    EXPECT_EQ(fields.printUnit(), PrintUnit::inches);
    EXPECT_EQ(fields.response(), (ResizeDialogResponse{ResizeDialogMode::image,
                                                       {900, 620, 72, CanvasAnchor::bottomLeft}}));
}

TEST(ResizeFields, APercentageIsRoundedToWholePixelsOfAtLeastOne) {
    ResizeFields odd = fieldsFor(101, 10);
    odd.editPercentage(50);
    EXPECT_EQ(odd.width(), 51.0);
    EXPECT_EQ(odd.height(), 5.0);
    odd.editPercentage(1);
    EXPECT_EQ(odd.width(), 1.0);
    EXPECT_EQ(odd.height(), 1.0);
    odd.editPercentage(0);
    EXPECT_EQ(odd.response().result.width, 1.0);
}

TEST(ResizeFields, APercentageCountsOnlyWhileItIsTheBasis) {
    ResizeFields fields = absoluteFieldsFor(100, 50);
    fields.editPercentage(200);
    EXPECT_EQ(fields.width(), 100.0);
    fields.editWidth(30);
    fields.setBasis(ResizeBasis::percentage);
    EXPECT_EQ(fields.width(), 200.0);
    EXPECT_EQ(fields.height(), 100.0);
}

TEST(ResizeFields, WidthAndHeightFollowEachOtherInTheRatioOfTheCanvas) {
    ResizeFields fields = absoluteFieldsFor(300, 200);
    fields.editWidth(100);
    EXPECT_EQ(fields.height(), 67.0);
    fields.editHeight(1);
    EXPECT_EQ(fields.width(), 2.0);
    fields.editWidth(0);
    EXPECT_EQ(fields.height(), 1.0);
    EXPECT_EQ(fields.response().result.width, 1.0);
}

TEST(ResizeFields, WithoutTheRatioEachSideIsLeftAlone) {
    ResizeFields fields = absoluteFieldsFor(300, 200);
    fields.setMaintainsAspectRatio(false);
    fields.editHeight(777);
    EXPECT_EQ(fields.width(), 300.0);
    fields.editWidth(5);
    EXPECT_EQ(fields.height(), 777.0);
}

TEST(ResizeFields, TheResolutionIsHeldForAnInchWhateverItsUnit) {
    ResizeFields fields = fieldsFor(10, 10, 300);
    fields.setResolutionUnit(ResolutionUnit::pixelsPerCentimeter);
    EXPECT_NEAR(fields.shownResolution(), 118.11, 0.001);
    EXPECT_EQ(fields.resolutionDPI(), 300.0);
    fields.editShownResolution(100);
    EXPECT_EQ(fields.resolutionDPI(), 254.0);
    fields.setResolutionUnit(ResolutionUnit::pixelsPerInch);
    EXPECT_EQ(fields.shownResolution(), 254.0);
    fields.editShownResolution(0);
    EXPECT_EQ(fields.response().result.resolutionDPI, 1.0);
}

TEST(ResizeFields, ThePrintSizeIsAViewOfTheSizeInPixels) {
    ResizeFields fields = absoluteFieldsFor(600, 300, 300);
    EXPECT_EQ(fields.printWidth(), 2.0);
    EXPECT_EQ(fields.printHeight(), 1.0);
    fields.setPrintUnit(PrintUnit::centimeters);
    EXPECT_NEAR(fields.printWidth(), 5.08, 1e-9);
    fields.setPrintUnit(PrintUnit::inches);
    fields.editPrintWidth(4);
    EXPECT_EQ(fields.width(), 1200.0);
    EXPECT_EQ(fields.height(), 600.0);
    fields.setMaintainsAspectRatio(false);
    fields.setPrintUnit(PrintUnit::centimeters);
    fields.editPrintHeight(2.54);
    EXPECT_EQ(fields.height(), 300.0);
    EXPECT_EQ(fields.width(), 1200.0);
    fields.editPrintWidth(0);
    EXPECT_EQ(fields.width(), 1.0);
}

TEST(ResizeFields, AResolutionBelowOneCountsAsOneForThePrintSize) {
    ResizeFields fields = absoluteFieldsFor(600, 300, 0.25);
    EXPECT_EQ(fields.printWidth(), 600.0);
    fields.editPrintWidth(10);
    EXPECT_EQ(fields.width(), 10.0);
}

TEST(ResizeFields, TheAnswerIsWholeAndCarriesTheModeOfThatMoment) {
    ResizeFields fields = absoluteFieldsFor(300, 200);
    fields.setMaintainsAspectRatio(false);
    fields.editWidth(10.5);
    fields.editHeight(10.4);
    fields.setAnchor(CanvasAnchor::top);
    fields.setMode(ResizeDialogMode::canvas);
    EXPECT_EQ(fields.response(),
              (ResizeDialogResponse{ResizeDialogMode::canvas, {11, 10, 96, CanvasAnchor::top}}));
}

TEST(ResizeFields, ACanvasOfNothingDividesNothing) {
    ResizeFields fields = absoluteFieldsFor(0, 0);
    fields.editWidth(40);
    EXPECT_EQ(fields.height(), 40.0);
    EXPECT_EQ(fields.response().result.width, 40.0);
}

} // namespace
} // namespace quillabrae::shell
