// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintTool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillabrae::model {
namespace {

TEST(PaintTool, ItsStoredFormIsItsRawText) {
    EXPECT_EQ(paintToolFromRawText(u"brush"), PaintTool::paintbrush);
    EXPECT_EQ(rawText(PaintTool::paintbrush), QStringLiteral("brush"));
}

TEST(PaintTool, ACaseNameThatDiffersFromTheStoredFormIsNoTool) {
    EXPECT_EQ(paintToolFromRawText(u"paintbrush"), std::nullopt);
}

} // namespace
} // namespace quillabrae::model
