// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/WhenShown.h"
#include "shell/dialogs/Alert.h"
#include "store/StoreTest.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

/// Runs an alert and does something with its window once it is up.
int runWith(const Alert& alert, const std::function<void(QWidget&)>& act) {
    const WhenShown shown(act);
    return runAlert(alert, nullptr);
}

TEST(Alert, HasTheWordsForFlattening) {
    const Alert alert = Alerts::flattenBeforeSaving(3);
    EXPECT_EQ(alert.message, QStringLiteral("Flatten layers before saving?"));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("This project has 3 layers. Saving as an image will flatten visible "
                             "layers into a single image file. Your editable project stays "
                             "unchanged."));
    EXPECT_EQ(alert.buttons,
              QStringList({QStringLiteral("Save Flattened Image"), QStringLiteral("Cancel")}));
}

TEST(Alert, ShowsEachLineOfItsWords) {
    int labels = 0;
    runWith(Alerts::flattenBeforeSaving(3), [&](QWidget& window) {
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                << qPrintable(label->text());
            ++labels;
        }
        window.close();
    });
    EXPECT_EQ(labels, 2);
}

TEST(Alert, HasTheWordsForReplacing) {
    const Alert alert = Alerts::replaceFile(QStringLiteral("100%1.png"));
    EXPECT_EQ(alert.message, QStringLiteral("A file named \"100%1.png\" already exists."));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("Do you want to replace it? The existing file will be overwritten."));
    EXPECT_EQ(alert.buttons, QStringList({QStringLiteral("Replace"), QStringLiteral("Cancel")}));
}

TEST(Alert, HasTheWordsForClosing) {
    const Alert alert = Alerts::saveBeforeClosing(QStringLiteral("Cat"));
    EXPECT_EQ(alert.message, QStringLiteral("Save changes to \"Cat\" before closing?"));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("If you don't save, changes to this project will be lost."));
    EXPECT_EQ(alert.buttons, QStringList({QStringLiteral("Save"), QStringLiteral("Don't Save"),
                                          QStringLiteral("Cancel")}));
}

TEST(Alert, HasTheWordsForPasting) {
    const Alert alone = Alerts::pasteImage({640.4, 480}, store::PasteTarget::noProject);
    EXPECT_EQ(alone.message, QStringLiteral("Paste Image"));
    EXPECT_EQ(alone.informativeText,
              QStringLiteral("Choose how to place the 640 x 480 image from the clipboard."));
    EXPECT_EQ(alone.buttons,
              QStringList({QStringLiteral("Open as new project"), QStringLiteral("Cancel")}));
    const Alert larger = Alerts::pasteImage({640, 480}, store::PasteTarget::smallerCanvas);
    EXPECT_EQ(larger.message, QStringLiteral("Paste Image"));
    EXPECT_EQ(larger.informativeText,
              QStringLiteral("The image being pasted is larger than the current canvas. What do "
                             "you want to do with it?"));
    EXPECT_EQ(larger.buttons,
              QStringList({QStringLiteral("Open as new project"), QStringLiteral("Expand canvas"),
                           QStringLiteral("Keep canvas size"), QStringLiteral("Cancel")}));
}

TEST(Alert, AnswersWithTheButtonThatWasPressed) {
    const Alert alert = Alerts::saveBeforeClosing(QStringLiteral("Cat"));
    for (int index = 0; index < 3; ++index) {
        const int answer = runWith(alert, [&](QWidget& window) {
            const auto buttons = window.findChildren<QPushButton*>();
            ASSERT_EQ(buttons.at(index)->text(), alert.buttons.at(index));
            buttons.at(index)->click();
        });
        EXPECT_EQ(answer, index);
    }
}

TEST(Alert, TakesReturnForTheFirstButtonAndEscapeAndClosingForTheLast) {
    const Alert alert = Alerts::replaceFile(QStringLiteral("cat.png"));
    EXPECT_EQ(runWith(alert, [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); }), 0);
    EXPECT_EQ(runWith(alert, [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); }), 1);
    EXPECT_EQ(runWith(alert, [](QWidget& window) { window.close(); }), 1);
}

} // namespace
} // namespace quillabrae::shell
