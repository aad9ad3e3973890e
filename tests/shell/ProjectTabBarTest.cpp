// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/controls/ScrollHints.h"
#include "shell/editor/ProjectTab.h"
#include "shell/editor/ProjectTabBar.h"

#include <QScrollArea>

namespace quillabrae::shell {
namespace {

class ProjectTabBarTest : public ShellTest {
protected:
    void showTabs(int count) {
        bar = std::make_unique<ProjectTabBar>(*store, *coordinator);
        bar->resize(1100, 48);
        bar->show();
        for (int number = 0; number < count; ++number) makeProject(*store);
        runDeferred();
    }
    const ScrollHints& hints() const { return *bar->findChild<ScrollHints*>(); }
    const ProjectTab* activeTab() const {
        for (const ProjectTab* tab : bar->findChildren<ProjectTab*>()) {
            if (tab->projectID() == store->activeProjectID()) return tab;
        }
        return nullptr;
    }
    bool isActiveTabWhole() const {
        const QWidget* viewport = bar->findChild<QScrollArea*>()->viewport();
        const QRect place(activeTab()->mapTo(viewport, QPoint()), activeTab()->size());
        return viewport->rect().contains(place);
    }

    std::unique_ptr<ProjectTabBar> bar;
};

TEST_F(ProjectTabBarTest, HintsAtNothingWhileAllTabsShow) {
    showTabs(2);
    EXPECT_FALSE(hints().hasMoreAtLeft());
    EXPECT_FALSE(hints().hasMoreAtRight());
}

TEST_F(ProjectTabBarTest, HintsAtTabsOnTheSideWhereTheyAre) {
    showTabs(30);
    EXPECT_TRUE(hints().hasMoreAtLeft());
    EXPECT_FALSE(hints().hasMoreAtRight());
    store->setActiveProjectID(store->openProjects().front().id);
    runDeferred();
    EXPECT_FALSE(hints().hasMoreAtLeft());
    EXPECT_TRUE(hints().hasMoreAtRight());
    store->setActiveProjectID(store->openProjects().at(15).id);
    runDeferred();
    EXPECT_TRUE(hints().hasMoreAtLeft());
    EXPECT_TRUE(hints().hasMoreAtRight());
}

TEST_F(ProjectTabBarTest, BringsTheChosenTabWhollyIntoSight) {
    showTabs(30);
    for (const std::size_t index : {29U, 0U, 12U, 13U, 11U, 28U}) {
        store->setActiveProjectID(store->openProjects().at(index).id);
        runDeferred();
        EXPECT_TRUE(isActiveTabWhole()) << index;
    }
}

} // namespace
} // namespace quillabrae::shell
