// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/HistoryList.h"
#include "shell/panels/HistoryListModel.h"
#include "shell/panels/HistoryPanel.h"
#include "store/StoreTest.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>

#include <random>

namespace quillabrae::shell {
namespace {

class HistoryPanelTest : public store::StoreTest {
protected:
    HistoryPanelTest() {
        project = makeProject(*store);
        panel = std::make_unique<HistoryPanel>(PanelContext{*store, {}});
        panel->resize(236, 200);
        panel->show();
    }

    HistoryList* list() const { return panel->findChild<HistoryList*>(); }
    const HistoryListModel& model() const {
        return *qobject_cast<const HistoryListModel*>(list()->model());
    }
    QAbstractButton* button(const char* title) const {
        for (QAbstractButton* candidate : panel->findChildren<QAbstractButton*>()) {
            if (candidate->accessibleName() == QLatin1StringView(title)) return candidate;
        }
        return nullptr;
    }
    static QStringList titlesOf(const HistoryListModel& model) {
        QStringList titles;
        for (int row = 0; row < model.rowCount(); ++row)
            titles << model.index(row, 0).data().toString();
        return titles;
    }
    bool isFuture(int row) const {
        return model().index(row, 0).data(HistoryListModel::isFutureRole).toBool();
    }
    bool isSelected(int row) const {
        return model().index(row, 0).data(HistoryListModel::isSelectedRole).toBool();
    }
    void press(int row) const {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                          list()->visualRect(model().index(row, 0)).center());
    }

    std::unique_ptr<store::ProjectStore> store = makeStore(store::Persistence::off);
    QUuid project;
    std::unique_ptr<HistoryPanel> panel;
};

TEST_F(HistoryPanelTest, ListsTheStepsWithTheirSymbols) {
    edit(*store, QStringLiteral("Pencil"));
    EXPECT_EQ(titlesOf(model()), titles(*store, project));
    EXPECT_EQ(model().index(1, 0).data(HistoryListModel::symbolNameRole).toString(),
              QStringLiteral("pencil"));
}

TEST_F(HistoryPanelTest, MarksTheStepItStandsAtAndDimsThoseAfterIt) {
    edit(*store, QStringLiteral("A"));
    edit(*store, QStringLiteral("B"));
    store->undo(project);
    EXPECT_TRUE(isSelected(1));
    EXPECT_FALSE(isSelected(2));
    EXPECT_FALSE(isFuture(1));
    EXPECT_TRUE(isFuture(2));
    EXPECT_TRUE(list()->selectionModel()->isSelected(model().index(1, 0)));
}

TEST_F(HistoryPanelTest, DrawsUndoneStepsFainter) {
    edit(*store, QStringLiteral("Edit"));
    const auto darkest = [this](int row) {
        const QImage picture =
            list()->viewport()->grab(list()->visualRect(model().index(row, 0))).toImage();
        int value = 255;
        for (int x = 40; x < picture.width(); ++x)
            for (int y = 4; y < picture.height() - 4; ++y)
                value = std::min(value, qGray(picture.pixel(x, y)));
        return value;
    };
    const int done = darkest(1);
    store->undo(project);
    EXPECT_GT(darkest(1), done + 20);
}

TEST_F(HistoryPanelTest, RestoresTheStepThatIsPressed) {
    edit(*store, QStringLiteral("A"));
    edit(*store, QStringLiteral("B"));
    press(0);
    EXPECT_EQ(store->history(project).selectedIndex, 0);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored New Project"));
    press(2);
    EXPECT_EQ(store->history(project).selectedIndex, 2);
}

TEST_F(HistoryPanelTest, RestoresByKeyboardOnlyWhenAsked) {
    edit(*store);
    panel->activateWindow();
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Up);
    EXPECT_EQ(store->history(project).selectedIndex, 1);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(store->history(project).selectedIndex, 0);
}

TEST_F(HistoryPanelTest, UndoesAndRedoesByItsButtons) {
    EXPECT_FALSE(button("Undo")->isEnabled());
    EXPECT_FALSE(button("Redo")->isEnabled());
    edit(*store);
    EXPECT_TRUE(button("Undo")->isEnabled());
    button("Undo")->click();
    EXPECT_EQ(store->history(project).selectedIndex, 0);
    EXPECT_FALSE(button("Undo")->isEnabled());
    EXPECT_TRUE(button("Redo")->isEnabled());
    button("Redo")->click();
    EXPECT_EQ(store->history(project).selectedIndex, 1);
    EXPECT_FALSE(button("Redo")->isEnabled());
}

TEST_F(HistoryPanelTest, KeepsTheStepItStandsAtInSight) {
    for (int count = 0; count < 40; ++count) edit(*store);
    const QRect view = list()->viewport()->rect();
    EXPECT_TRUE(view.contains(list()->visualRect(model().index(40, 0))));
    store->restoreHistory(project, store->history(project).entries.front().id);
    EXPECT_TRUE(view.contains(list()->visualRect(model().index(0, 0))));
}

TEST_F(HistoryPanelTest, ShowsTheHistoryOfTheProjectInFront) {
    edit(*store);
    makeProject(*store);
    EXPECT_EQ(model().rowCount(), 1);
    store->setActiveProjectID(project);
    EXPECT_EQ(model().rowCount(), 2);
    store->closeAllProjects();
    EXPECT_EQ(model().rowCount(), 0);
}

TEST_F(HistoryPanelTest, AddsARowForAnEditAndTouchesNoOther) {
    for (int count = 0; count < 200; ++count) edit(*store);
    QSignalSpy inserted(list()->model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(list()->model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(list()->model(), &QAbstractItemModel::modelReset);
    edit(*store);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted.front().at(1).toInt(), 201);
    EXPECT_EQ(inserted.front().at(2).toInt(), 201);
    EXPECT_EQ(removed.count(), 0);
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(HistoryPanelTest, IsTheStoresHistoryAfterAnySteps) {
    std::mt19937 random(11);
    for (int round = 0; round < 400; ++round) {
        switch (random() % 6) {
            case 0:
            case 1:
                store->undo(*store->activeProjectID());
                break;
            case 2:
                store->redo(*store->activeProjectID());
                break;
            case 3:
                if (store->openProjects().size() < 3)
                    makeProject(*store);
                else
                    store->setActiveProjectID(store->openProjects()[random() % 3].id);
                break;
            default:
                edit(*store, QStringLiteral("Edit %1").arg(round));
        }
        const auto& history = store->history(*store->activeProjectID());
        ASSERT_EQ(titlesOf(model()), titles(*store, *store->activeProjectID()));
        ASSERT_EQ(model().selectedRow(), history.selectedIndex);
        ASSERT_EQ(list()->currentIndex().row(), history.selectedIndex);
    }
}

} // namespace
} // namespace quillabrae::shell
