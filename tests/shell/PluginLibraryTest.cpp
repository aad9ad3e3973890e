// SPDX-License-Identifier: GPL-3.0-or-later
// The plugin library's window: what it shows, what its buttons do, and how the keyboard gets about.
#include "persistence/FaultyFileOperations.h"
#include "shell/ShellTest.h"
#include "shell/controls/SideList.h"
#include "shell/dialogs/Alert.h"
#include "shell/plugins/PluginCard.h"
#include "shell/plugins/PluginLibraryView.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cerrno>
#include <set>
#include <string_view>

namespace quillabrae::shell {
namespace {

class PluginLibraryTest : public ShellTest {
protected:
    PluginLibraryTest() {
        coordinator.reset();
        plugins = std::make_unique<effects::PluginLibraryService>(
            effects::PluginLibraryService::defaultInstallDirectory(paths), operations);
        coordinator = std::make_unique<WindowCoordinator>(
            WindowEnvironment{*store, preferences, windows, dialogs, *plugins});
        view = std::make_unique<PluginLibraryView>(PluginLibraryContext{
            *plugins, *store, [this](const QString& id) { coordinator->runPlugin(id); },
            [this](const Alert& alert, QWidget*) { alerts.push_back(alert); }});
        view->resize(980, 680);
        view->show();
        QApplication::setActiveWindow(view.get());
        runDeferred();
    }
    ~PluginLibraryTest() override {
        view.reset();
        coordinator.reset();
        plugins.reset();
    }

    QLineEdit* search() const { return view->findChild<QLineEdit*>(); }
    SideList* side() const { return view->findChild<SideList*>(); }
    void choose(const QString& title) {
        side()->setCurrentItem(side()->findItems(title, Qt::MatchExactly).front());
    }
    /// The titles of the plugins that are shown as plain cards, in the order of the screen.
    QStringList shown() const {
        QList<PluginCard*> cards = view->findChildren<PluginCard*>();
        cards.removeIf(
            [this](PluginCard* card) { return !card->isVisible() || card == featured(); });
        std::ranges::sort(cards, {},
                          [](const PluginCard* card) { return std::pair(card->y(), card->x()); });
        QStringList titles;
        for (const PluginCard* card : cards) titles << card->plugin().title;
        return titles;
    }
    PluginCard* featured() const { return view->findChild<PluginCard*>(); }
    QPushButton* button(const QString& name) const {
        QPushButton* found = nullptr;
        for (QPushButton* candidate : view->findChildren<QPushButton*>())
            if (candidate->accessibleName() == name && candidate->isVisible()) found = candidate;
        return found;
    }
    void press(const QString& name) {
        QPushButton* found = button(name);
        ASSERT_NE(found, nullptr) << qPrintable(name);
        found->click();
        runDeferred();
    }
    bool says(const QString& text) const {
        const auto labels = view->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->isVisible() && label->text() == text;
        });
    }
    QString focusedName() const {
        const QWidget* focused = QApplication::focusWidget();
        return focused == nullptr ? QString() : focused->accessibleName();
    }
    /// Goes on with the Tab key until the control of that name has the keyboard.
    bool tabTo(const QString& name) {
        for (int presses = 0; presses < 60; ++presses) {
            if (focusedName() == name && QApplication::focusWidget()->isVisible()) return true;
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        return false;
    }

    persistence::FaultyFileOperations operations;
    std::vector<Alert> alerts;
    std::unique_ptr<PluginLibraryView> view;
};

TEST_F(PluginLibraryTest, ShowsTheWholeCatalogueUnderTheFeaturedPlugin) {
    EXPECT_TRUE(says(QStringLiteral("Made for Quillabrae")));
    EXPECT_TRUE(says(QStringLiteral("Small, focused tools that extend your editing workflow.")));
    EXPECT_EQ(shown().join(u','),
              QStringLiteral("Ink Press,Color Lift,Monoform,Pixel Poster,Crisp Edge,Soft Light"));
    EXPECT_TRUE(featured()->isVisible());
    EXPECT_EQ(featured()->plugin().title, QStringLiteral("Ink Press"));
    EXPECT_TRUE(says(QStringLiteral("EDITOR'S PICK")));
}

TEST_F(PluginLibraryTest, BrowsesByCategory) {
    choose(QStringLiteral("Color"));
    EXPECT_EQ(shown().join(u','), QStringLiteral("Color Lift,Monoform"));
    EXPECT_TRUE(says(QStringLiteral("Curated effects, installed in one click.")));
    EXPECT_FALSE(featured()->isVisible());
    choose(QStringLiteral("Detail"));
    EXPECT_EQ(shown().join(u','), QStringLiteral("Crisp Edge,Soft Light"));
}

TEST_F(PluginLibraryTest, AHeadingIsNotChosen) {
    choose(QStringLiteral("Installed"));
    QTest::keyClick(side(), Qt::Key_Down);
    EXPECT_EQ(side()->currentItem()->text(), QStringLiteral("Color"));
}

TEST_F(PluginLibraryTest, SearchesWhatTheCardsSay) {
    QTest::keyClicks(search(), QStringLiteral("STYLIZE"));
    EXPECT_TRUE(says(QStringLiteral("Search results")));
    EXPECT_EQ(shown().join(u','), QStringLiteral("Ink Press,Pixel Poster"));
    EXPECT_FALSE(featured()->isVisible());
    search()->setText(QStringLiteral("   "));
    EXPECT_EQ(shown().size(), 6);
    EXPECT_TRUE(featured()->isVisible());
}

TEST_F(PluginLibraryTest, SaysWhyThereAreNoCards) {
    choose(QStringLiteral("Installed"));
    EXPECT_TRUE(shown().isEmpty());
    EXPECT_TRUE(says(QStringLiteral("Your plugins")));
    EXPECT_TRUE(says(QStringLiteral("Run or remove plugins installed on this Mac.")));
    EXPECT_TRUE(says(QStringLiteral("No plugins installed")));
    EXPECT_TRUE(
        says(QStringLiteral("Discover a plugin and install it to add it to your Plugins menu.")));
    search()->setText(QStringLiteral("zebra"));
    EXPECT_TRUE(says(QStringLiteral("No matching plugins")));
    EXPECT_TRUE(says(QStringLiteral("Try another search or browse a different category.")));
}

TEST_F(PluginLibraryTest, InstallsAndRemoves) {
    press(QStringLiteral("Install Monoform"));
    EXPECT_TRUE(
        plugins->installedPluginIDs().contains(QStringLiteral("studio.quillabrae.monoform")));
    EXPECT_EQ(button(QStringLiteral("Install Monoform")), nullptr);
    choose(QStringLiteral("Installed"));
    EXPECT_EQ(shown().join(u','), QStringLiteral("Monoform"));
    press(QStringLiteral("Remove Monoform"));
    EXPECT_TRUE(plugins->installedPluginIDs().isEmpty());
    EXPECT_TRUE(says(QStringLiteral("No plugins installed")));
}

TEST_F(PluginLibraryTest, TheFeaturedCardAndTheOtherOfItsPluginStandAlike) {
    auto* install = featured()->findChild<QPushButton*>();
    ASSERT_EQ(install->text(), QStringLiteral("Install"));
    install->click();
    EXPECT_FALSE(install->isVisible());
    EXPECT_EQ(button(QStringLiteral("Install Ink Press")), nullptr);
}

TEST_F(PluginLibraryTest, RunsOnAnOpenProjectAlone) {
    press(QStringLiteral("Install Pixel Poster"));
    const QString run = QStringLiteral("Run Pixel Poster");
    EXPECT_FALSE(button(run)->isEnabled());
    EXPECT_EQ(button(run)->accessibleDescription(),
              QStringLiteral("Open a project to run this plugin"));
    makeProject(*store);
    EXPECT_TRUE(button(run)->isEnabled());
    EXPECT_NE(button(run)->accessibleDescription(),
              QStringLiteral("Open a project to run this plugin"));
    press(run);
    EXPECT_EQ(titles(*store, *store->activeProjectID()).back(), QStringLiteral("Pixel Poster"));
    EXPECT_TRUE(says(QStringLiteral("Applied Pixel Poster")));
    store->closeAllProjects();
    EXPECT_FALSE(button(run)->isEnabled());
}

TEST_F(PluginLibraryTest, AFailedInstallIsTold) {
    QFile blocking(plugins->installDirectory());
    QDir().mkpath(QFileInfo(blocking).absolutePath());
    ASSERT_TRUE(blocking.open(QIODevice::WriteOnly));
    button(QStringLiteral("Install Soft Light"))->click();
    EXPECT_TRUE(alerts.empty());
    runDeferred();
    ASSERT_EQ(alerts.size(), 1U);
    EXPECT_TRUE(alerts.front().informativeText.startsWith(
        QStringLiteral("The plugin could not be installed: ")));
    EXPECT_NE(button(QStringLiteral("Install Soft Light")), nullptr);
}

TEST_F(PluginLibraryTest, AFailedRemovalIsTold) {
    press(QStringLiteral("Install Soft Light"));
    operations.beforeStep = [](int, const char* name) {
        if (std::string_view(name) == "removeTree")
            throw platform::FileOperationError(QString(), EACCES);
    };
    press(QStringLiteral("Remove Soft Light"));
    ASSERT_EQ(alerts.size(), 1U);
    EXPECT_TRUE(alerts.front().informativeText.startsWith(
        QStringLiteral("The plugin could not be removed: ")));
    EXPECT_NE(button(QStringLiteral("Remove Soft Light")), nullptr);
}

TEST_F(PluginLibraryTest, IsUsedWithTheKeyboardAlone) {
    makeProject(*store);
    EXPECT_EQ(QApplication::focusWidget(), side());
    QTest::keyClick(side(), Qt::Key_End);
    EXPECT_EQ(shown().join(u','), QStringLiteral("Crisp Edge,Soft Light"));
    ASSERT_TRUE(tabTo(QStringLiteral("Install Soft Light")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    runDeferred();
    // The button that went has handed on the keyboard.
    EXPECT_EQ(focusedName(), QStringLiteral("Run Soft Light"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    runDeferred();
    EXPECT_EQ(titles(*store, *store->activeProjectID()).back(), QStringLiteral("Soft Light"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), search());
    QTest::keyClicks(search(), QStringLiteral("glow"));
    EXPECT_EQ(shown().join(u','), QStringLiteral("Soft Light"));
    QTest::keyClick(search(), Qt::Key_Escape);
    EXPECT_TRUE(search()->text().isEmpty());
}

TEST_F(PluginLibraryTest, ACardThatGoesHandsTheKeyboardOn) {
    press(QStringLiteral("Install Color Lift"));
    press(QStringLiteral("Install Soft Light"));
    choose(QStringLiteral("Installed"));
    ASSERT_TRUE(tabTo(QStringLiteral("Remove Color Lift")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    runDeferred();
    EXPECT_EQ(focusedName(), QStringLiteral("Remove Soft Light"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    runDeferred();
    EXPECT_EQ(QApplication::focusWidget(), side());
}

TEST_F(PluginLibraryTest, LaysItsCardsOutAsTheRoomAllows) {
    const auto columns = [this](int width) {
        view->resize(width, 680);
        runDeferred();
        std::set<int> places;
        for (const PluginCard* card : view->findChildren<PluginCard*>())
            if (card != featured() && card->isVisible()) places.insert(card->x());
        return places.size();
    };
    EXPECT_EQ(columns(820), 2U);
    EXPECT_EQ(columns(980), 2U);
    EXPECT_EQ(columns(1400), 4U);
    EXPECT_EQ(columns(560), 1U);
    EXPECT_EQ(shown().size(), 6);
}

TEST_F(PluginLibraryTest, NamesItsControlsAndReachesThemByTab) {
    press(QStringLiteral("Install Crisp Edge"));
    for (QPushButton* control : view->findChildren<QPushButton*>()) {
        EXPECT_TRUE(control->accessibleName().startsWith(control->text() + u' '));
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus);
    }
    EXPECT_FALSE(search()->accessibleName().isEmpty());
    EXPECT_FALSE(side()->accessibleName().isEmpty());
}

TEST(PluginLibraryAlert, TellsOfAFailureWithoutWordsAllTheSame) {
    EXPECT_EQ(pluginFailureAlert({}).informativeText, QStringLiteral("Something went wrong."));
    EXPECT_EQ(pluginFailureAlert(QStringLiteral("No room.")).informativeText,
              QStringLiteral("No room."));
}

} // namespace
} // namespace quillabrae::shell
