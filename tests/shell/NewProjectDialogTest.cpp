// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/NumberField.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "store/StoreTest.h"

#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

void type(const NewProjectDialog& dialog, int field, const QString& text) {
    NumberField* number = dialog.findChildren<NumberField*>().at(field);
    number->selectAll();
    QTest::keyClicks(number, text);
}

TEST(NewProjectDialog, StartsWithTheGivenSizeAndTheUsualResolution) {
    const NewProjectDialog dialog({1234, 567});
    EXPECT_EQ(dialog.answer(), (NewProjectDialogResult{1234, 567, 96}));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("New Project"));
    EXPECT_EQ(dialog.size(), QSize(420, 310));
}

TEST(NewProjectDialog, RoundsWhatWasTypedToWholeNumbersOfAtLeastOne) {
    const NewProjectDialog dialog({900, 620});
    type(dialog, 0, QStringLiteral("0.4"));
    type(dialog, 1, QStringLiteral("99.5"));
    type(dialog, 2, QStringLiteral("0"));
    EXPECT_EQ(dialog.answer(), (NewProjectDialogResult{1, 100, 1}));
}

TEST(NewProjectDialog, SetsNoUpperLimit) {
    const NewProjectDialog dialog({900, 620});
    type(dialog, 0, QStringLiteral("1000000"));
    EXPECT_EQ(dialog.answer().width, 1000000);
}

TEST(NewProjectDialog, CreatesOnReturnAndCancelsOnEscape) {
    NewProjectDialog dialog({900, 620});
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.QDialog::result(), QDialog::Accepted);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(dialog.QDialog::result(), QDialog::Rejected);
}

} // namespace
} // namespace quillabrae::shell
