// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace quillabrae::shell {
namespace {

class PluginRowsTest : public ShellTest {
protected:
    PluginRowsTest() { actions.fill(bar); }

    QList<QAction*> rows() const {
        for (QAction* menu : bar.actions())
            if (menu->text() == QStringLiteral("Plugins")) return menu->menu()->actions();
        return {};
    }
    /// The titles that the menu shows.
    QString titles() const {
        QStringList shown;
        for (const QAction* row : rows())
            if (row->isVisible()) shown << (row->isSeparator() ? QStringLiteral("-") : row->text());
        return shown.join(u'/');
    }
    void install(int place) {
        plugins->install(plugins->catalog()[static_cast<std::size_t>(place)]);
    }

    CommandActions actions{{*store, *coordinator}};
    QMenuBar bar;
};

TEST_F(PluginRowsTest, SayThatNothingIsInstalled) {
    EXPECT_EQ(titles(), QStringLiteral("Plugin Library.../-/No Plugins Installed"));
}

TEST_F(PluginRowsTest, FollowWhatIsInstalledInTheCataloguesOrder) {
    install(5);
    install(0);
    EXPECT_EQ(titles(), QStringLiteral("Plugin Library.../-/Ink Press/Soft Light"));
    plugins->uninstall(plugins->catalog().front());
    EXPECT_EQ(titles(), QStringLiteral("Plugin Library.../-/Soft Light"));
    plugins->uninstall(plugins->catalog().back());
    EXPECT_EQ(titles(), QStringLiteral("Plugin Library.../-/No Plugins Installed"));
}

TEST_F(PluginRowsTest, AreEnabledWhileAProjectIsOpen) {
    install(0);
    EXPECT_FALSE(rows().back()->isEnabled());
    makeProject(*store);
    EXPECT_TRUE(rows().back()->isEnabled());
    store->closeProject(*store->activeProjectID());
    EXPECT_FALSE(rows().back()->isEnabled());
}

TEST_F(PluginRowsTest, RunTheirPlugin) {
    makeProject(*store);
    install(3);
    rows().back()->trigger();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Applied Pixel Poster"));
}

TEST_F(PluginRowsTest, LeadToTheLibraryWhereThePluginIsNotInstalled) {
    makeProject(*store);
    const QString before = store->statusMessage();
    for (const QString& id : {plugins->catalog().front().id, QStringLiteral("unknown")}) {
        coordinator->runPlugin(id);
        EXPECT_EQ(store->statusMessage(), before);
        EXPECT_NE(coordinator->window(WindowRole::pluginLibrary), nullptr);
    }
    EXPECT_EQ(windows.countOf(WindowRole::pluginLibrary), 1);
}

} // namespace
} // namespace quillabrae::shell
