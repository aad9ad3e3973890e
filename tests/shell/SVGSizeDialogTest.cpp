// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/NumberField.h"
#include "shell/dialogs/SVGSizeDialogView.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

using persistence::SVGImportSizeResult;

TEST(SvgSizeFields, StartAtTheNaturalSizeInWholePixels) {
    const SVGSizeFields fields({640.4, 0.2});
    EXPECT_EQ(fields.width(), 640.0);
    EXPECT_EQ(fields.height(), 1.0);
}

TEST(SvgSizeFields, FollowEachOtherInTheRatioOfTheNaturalSize) {
    SVGSizeFields fields({400, 300});
    fields.editWidth(800);
    EXPECT_EQ(fields.height(), 600.0);
    fields.editHeight(1);
    EXPECT_EQ(fields.width(), 1.0);
    EXPECT_EQ(fields.height(), 1.0);
    fields.editWidth(0);
    EXPECT_EQ(fields.accepted(), (SVGImportSizeResult{1, 1}));
}

TEST(SvgSizeFields, WorkTheHeightOutOnceMoreInTheEnd) {
    SVGSizeFields fields({3, 2});
    fields.editHeight(10);
    EXPECT_EQ(fields.width(), 15.0);
    fields.editHeight(7);
    EXPECT_EQ(fields.width(), 11.0);
    EXPECT_EQ(fields.height(), 7.0);
    EXPECT_EQ(fields.accepted(), (SVGImportSizeResult{11, 7}));
    SVGSizeFields tall({0.5, 10});
    EXPECT_EQ(tall.accepted(), (SVGImportSizeResult{1, 10}));
}

TEST(SvgSizeDialog, ShowsTheNaturalSizeAndKeepsItsFieldsLinked) {
    SVGSizeDialogView dialog({400, 300});
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Import SVG"));
    EXPECT_EQ(dialog.size(), QSize(420, 250));
    const auto fields = dialog.findChildren<NumberField*>();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[0]->value(), 400.0);
    fields[0]->selectAll();
    QTest::keyClicks(fields[0], QStringLiteral("800"));
    EXPECT_EQ(fields[1]->value(), 600.0);
    fields[1]->selectAll();
    QTest::keyClicks(fields[1], QStringLiteral("150"));
    EXPECT_EQ(fields[0]->value(), 200.0);
    EXPECT_EQ(dialog.answer(), (SVGImportSizeResult{200, 150}));
}

} // namespace
} // namespace quillabrae::shell
