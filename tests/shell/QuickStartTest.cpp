// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/SideList.h"
#include "shell/looks/Symbols.h"
#include "shell/quickstart/PaintNetQuickStartView.h"
#include "shell/quickstart/ShortcutComparison.h"
#include "shell/quickstart/TourPages.h"
#include "shell/quickstart/TourPicture.h"

#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTest>
#include <QTreeWidget>

namespace quillabrae::shell {
namespace {

const ComparedShortcut* compared(const std::vector<ComparedShortcut>& all, const char* action) {
    const auto found =
        std::ranges::find(all, QString::fromLatin1(action), &ComparedShortcut::action);
    return found == all.end() ? nullptr : &*found;
}

TEST(ShortcutComparison, HasReadableKeysThatStandOnce) {
    QStringList seen;
    for (const ComparedShortcut& shortcut : comparedShortcuts()) {
        const QString keys = shortcut.there.toString(QKeySequence::PortableText);
        EXPECT_FALSE(keys.isEmpty()) << qPrintable(shortcut.action);
        EXPECT_FALSE(seen.contains(keys)) << qPrintable(keys);
        seen << keys;
    }
}

TEST(ShortcutComparison, TakesWhatIsHereFromTheCommandTable) {
    // Every row once more, told from the actions' side.
    const auto all = comparedShortcuts();
    ASSERT_EQ(all.size(), paintNetShortcuts().size());
    for (std::size_t row = 0; row < all.size(); ++row) {
        const auto id = paintNetShortcuts()[row].command;
        const auto keys = id ? shortcutsOf(command(*id)) : QList<QKeySequence>();
        EXPECT_EQ(all[row].isSame(), keys.contains(all[row].there)) << qPrintable(all[row].action);
        EXPECT_TRUE(all[row].here.isEmpty() || keys.contains(all[row].here));
        EXPECT_EQ(all[row].here.isEmpty(), keys.isEmpty());
    }
}

TEST(ShortcutComparison, TakesAnyOfACommandsKeysForTheSame) {
    const auto all = comparedShortcuts();
    ASSERT_NE(compared(all, "Redo"), nullptr);
    EXPECT_TRUE(compared(all, "Redo")->isSame());
    EXPECT_EQ(compared(all, "Redo")->here, QKeySequence(QStringLiteral("Ctrl+Y")));
}

TEST(ShortcutComparison, TellsWhatTheirKeysDoHere) {
    const auto all = comparedShortcuts();
    const ComparedShortcut* turning = compared(all, "Rotate / Zoom");
    ASSERT_NE(turning, nullptr);
    EXPECT_FALSE(turning->isSame());
    EXPECT_EQ(turning->here, QKeySequence(QStringLiteral("Ctrl+Alt+Z")));
    EXPECT_EQ(turning->note, QStringLiteral("Ctrl+Shift+Z is Redo"));
    EXPECT_EQ(compared(all, "Layer Properties")->note, QStringLiteral("in the Layers menu"));
    EXPECT_EQ(compared(all, "Flatten")->note, QStringLiteral("Ctrl+Shift+F is Align Object"));
}

TEST(TourPages, PutTheKeysOfCommandsIntoTheirTexts) {
    EXPECT_EQ(withShortcuts("Press {Undo} or {Save As...}."),
              QStringLiteral("Press Ctrl+Z or Ctrl+Shift+S."));
    EXPECT_EQ(withShortcuts("No keys here."), QStringLiteral("No keys here."));
}

TEST(TourPages, NameCommandsThatHaveKeys) {
    for (const TourPage& page : tourPages()) {
        for (const TourPoint& point : page.points) {
            const QString text = QString::fromLatin1(point.text);
            qsizetype start = -1;
            while ((start = text.indexOf(u'{', start + 1)) >= 0) {
                const qsizetype end = text.indexOf(u'}', start);
                ASSERT_GT(end, start) << point.text;
                const QByteArray title = text.mid(start, end + 1 - start).toLatin1();
                EXPECT_FALSE(withShortcuts(title.constData()).isEmpty()) << title.constData();
            }
        }
    }
}

TEST(TourPages, HaveTheirPicturesInBothSchemes) {
    for (const TourPage& page : tourPages()) {
        EXPECT_TRUE(Symbols::isKnown(QString::fromLatin1(page.symbolName))) << page.symbolName;
        if (page.pictureName == nullptr) continue;
        for (const char* scheme : {"light", "dark"}) {
            EXPECT_TRUE(QFile::exists(
                QStringLiteral(":/tour/%1/%2.png")
                    .arg(QLatin1StringView(scheme), QLatin1StringView(page.pictureName))))
                << scheme << ' ' << page.pictureName;
        }
    }
}

class QuickStartTest : public ShellTest {
protected:
    QuickStartTest() {
        actions = std::make_unique<CommandActions>(CommandContext{*store, *coordinator});
        view = new PaintNetQuickStartView(*actions);
        view->setFixedSize(windowTraits(WindowRole::paintNetQuickStart).size);
        view->show();
        view->activateWindow();
        runDeferred();
    }
    ~QuickStartTest() override {
        delete view;
        actions.reset();
    }

    QPushButton* button(const char* text) const {
        for (QPushButton* candidate : view->findChildren<QPushButton*>()) {
            if (candidate->text() == QLatin1StringView(text)) return candidate;
        }
        return nullptr;
    }
    int page() const { return view->findChild<QStackedWidget*>()->currentIndex(); }
    void press(Qt::Key key) const { QTest::keyClick(QApplication::focusWidget(), key); }

    std::unique_ptr<CommandActions> actions;
    QPointer<PaintNetQuickStartView> view;
};

TEST_F(QuickStartTest, IsGoneThroughWithEnter) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    for (int index = 0; index < static_cast<int>(tourPages().size()); ++index) {
        EXPECT_EQ(page(), index);
        press(Qt::Key_Return);
    }
    runDeferred();
    EXPECT_FALSE(view->isVisible());
}

TEST_F(QuickStartTest, GoesBackAndForthByPages) {
    press(Qt::Key_PageDown);
    press(Qt::Key_PageDown);
    EXPECT_EQ(page(), 2);
    press(Qt::Key_PageUp);
    EXPECT_EQ(page(), 1);
    for (int times = 0; times < 10; ++times) press(Qt::Key_PageDown);
    EXPECT_EQ(page(), static_cast<int>(tourPages().size()) - 1);
    EXPECT_TRUE(view->isVisible());
    for (int times = 0; times < 10; ++times) press(Qt::Key_PageUp);
    EXPECT_EQ(page(), 0);
}

TEST_F(QuickStartTest, FollowsTheListOfSteps) {
    auto* steps = view->findChild<SideList*>();
    ASSERT_EQ(steps->count(), static_cast<int>(tourPages().size()));
    steps->setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(page(), 1);
    press(Qt::Key_Return);
    EXPECT_EQ(page(), 2);
    EXPECT_EQ(steps->currentRow(), 2);
}

TEST_F(QuickStartTest, KeepsTheKeyboardWhereTheWayBackEnds) {
    press(Qt::Key_Return);
    button("Back")->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(page(), 0);
    EXPECT_FALSE(button("Back")->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), button("Next"));
}

TEST_F(QuickStartTest, EndsWithEscape) {
    press(Qt::Key_Escape);
    runDeferred();
    EXPECT_FALSE(view->isVisible());
}

TEST_F(QuickStartTest, SaysOnItsLastPageThatItIsDone) {
    EXPECT_EQ(button("Done"), nullptr);
    for (int times = 0; times < 10; ++times) press(Qt::Key_PageDown);
    ASSERT_NE(button("Done"), nullptr);
    button("Done")->click();
    runDeferred();
    EXPECT_FALSE(view->isVisible());
}

TEST_F(QuickStartTest, ListsEveryShortcutInOneOfItsParts) {
    const auto* table = view->findChild<QTreeWidget*>();
    ASSERT_EQ(table->topLevelItemCount(), 2);
    const auto all = comparedShortcuts();
    const auto same = std::ranges::count_if(all, &ComparedShortcut::isSame);
    EXPECT_EQ(table->topLevelItem(1)->childCount(), same);
    EXPECT_EQ(table->topLevelItem(0)->childCount(), static_cast<int>(all.size()) - same);
}

TEST_F(QuickStartTest, ShowsNoTextThatIsCutOff) {
    auto* pages = view->findChild<QStackedWidget*>();
    for (int index = 0; index < pages->count(); ++index) {
        pages->setCurrentIndex(index);
        runDeferred();
        for (const QLabel* label : pages->currentWidget()->findChildren<QLabel*>()) {
            if (label->text().isEmpty()) continue;
            const int needed = label->wordWrap() ? label->heightForWidth(label->width())
                                                 : label->sizeHint().height();
            EXPECT_GE(label->height(), needed) << qPrintable(label->text());
            EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width())
                << qPrintable(label->text());
        }
        const auto* scroller = qobject_cast<QScrollArea*>(pages->currentWidget());
        EXPECT_EQ(scroller->verticalScrollBar()->maximum(), 0) << index;
        const QWidget* page = scroller->widget();
        for (const QWidget* part :
             page->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            EXPECT_TRUE(page->rect().contains(part->geometry())) << index;
    }
}

} // namespace
} // namespace quillabrae::shell
