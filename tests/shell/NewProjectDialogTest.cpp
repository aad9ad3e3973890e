// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/NumberField.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "store/StoreTest.h"

#include <QLabel>
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

QString need(const NewProjectDialog& dialog) {
    return dialog.findChild<QLabel*>(QStringLiteral("canvasNeed"))->text();
}

TEST(NewProjectDialog, TellsWhatALayerTakes) {
    const NewProjectDialog dialog({1024, 1024});
    EXPECT_EQ(need(dialog), QStringLiteral("Each layer takes 4.0 MB of memory."));
    type(dialog, 0, QStringLiteral("16"));
    type(dialog, 1, QStringLiteral("16"));
    EXPECT_EQ(need(dialog), QStringLiteral("Each layer takes 1.0 kB of memory."));
}

TEST(NewProjectDialog, RefusesInWordsWhatNoPictureCanBe) {
    NewProjectDialog dialog({900, 620});
    const auto* create = dialog.findChild<QPushButton*>(QStringLiteral("accept"));
    type(dialog, 0, QStringLiteral("32769"));
    EXPECT_EQ(need(dialog), QStringLiteral("Too large: a side can have 32,768 pixels at most."));
    EXPECT_FALSE(create->isEnabled());
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    type(dialog, 0, QStringLiteral("32768"));
    EXPECT_TRUE(create->isEnabled());
    type(dialog, 1, QStringLiteral("10000"));
    EXPECT_EQ(need(dialog),
              QStringLiteral("Too large: a picture can have 300 million pixels at most."));
    EXPECT_FALSE(create->isEnabled());
}

} // namespace
} // namespace quillabrae::shell
