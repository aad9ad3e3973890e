// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/commands/CommandTable.h"
#include "shell/editor/QuickToolbar.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenuBar>
#include <QTest>

#include <set>

namespace quillabrae::shell {
namespace {

class CommandTableTest : public ShellTest {
protected:
    const Command& command(const char* title) const {
        const auto table = commandTable();
        const auto found = std::ranges::find_if(table, [title](const Command& row) {
            return row.title != nullptr && std::string_view(row.title) == title;
        });
        EXPECT_NE(found, table.end()) << title;
        return *found;
    }
    bool isEnabled(const char* title) const { return command(title).isEnabled(*store); }
    void run(const char* title) { command(title).run({*store, *coordinator}); }
};

TEST_F(CommandTableTest, StandsInItsOrder) {
    QStringList rows;
    for (const Command& row : commandTable()) {
        rows << QString::fromLatin1(title(row.menu)) + u'/' +
                    QString::fromLatin1(row.title == nullptr ? "-" : row.title);
    }
    EXPECT_EQ(rows.join(u'\n'),
              QStringLiteral("File/New Project\nFile/Open Project...\nFile/-\nFile/Save\n"
                             "File/Save As...\nFile/-\nFile/Close Project\nFile/-\nFile/Quit\n"
                             "Edit/Undo\nEdit/Redo\nEdit/-\nEdit/Cut\nEdit/Copy\n"
                             "Edit/Select All\nEdit/Drop Selection\nEdit/Paste\n"
                             "Edit/-\nEdit/Preferences\n"
                             "Zoom/Zoom In\nZoom/Zoom In\nZoom/Zoom Out\nZoom/Zoom to Fit\n"
                             "Image/Resize...\nImage/Canvas Size...\nImage/Invert\n"
                             "Layers/Add New Layer\nLayers/Delete Layer\n"
                             "Layers/Duplicate Layer\nLayers/Merge Layer Down\n"
                             "Layers/Import From File...\nLayers/-\n"
                             "Layers/Flip Horizontal\nLayers/Flip Vertical\n"
                             "Layers/Rotate / Zoom...\nLayers/-\nLayers/Layer Properties...\n"
                             "Object/Align Object...\nObject/Repeat Last Action\n"
                             "Plugins/Plugin Library...\nPlugins/-\n"
                             "Plugins/No Plugins Installed\nHelp/Paint.NET Quick Start"));
}

TEST_F(CommandTableTest, NamesKeysThatExistAndNoKeyTwice) {
    const CommandActions actions({*store, *coordinator});
    std::set<QString> keys;
    for (const Command& row : commandTable()) {
        if (row.title == nullptr) continue;
        for (const QKeySequence& key : shortcutsOf(row)) {
            EXPECT_FALSE(key.isEmpty()) << row.title;
            EXPECT_NE(key[0].key(), Qt::Key_unknown) << row.title;
            EXPECT_TRUE(keys.insert(key.toString()).second) << row.title;
        }
    }
    EXPECT_EQ(actions.action(QStringLiteral("Redo"))->shortcuts(),
              QList({QKeySequence(QStringLiteral("Ctrl+Shift+Z")),
                     QKeySequence(QStringLiteral("Ctrl+Y"))}));
    QWidget window;
    actions.addKeysTo(window);
    QList<QKeySequence> zoomingIn;
    for (const QAction* action : window.actions()) {
        if (action->text() == QStringLiteral("Zoom In")) zoomingIn += action->shortcuts();
    }
    EXPECT_EQ(zoomingIn, QList({QKeySequence(QStringLiteral("Ctrl++")),
                                QKeySequence(QStringLiteral("Ctrl+="))}));
}

TEST_F(CommandTableTest, KeepsOnlyWhatNeedsNoProjectEnabledWithoutOne) {
    for (const auto* title :
         {"New Project", "Open Project...", "Quit", "Cut", "Copy", "Paste", "Zoom In", "Zoom Out",
          "Preferences", "Plugin Library...", "Paint.NET Quick Start"}) {
        EXPECT_TRUE(isEnabled(title)) << title;
    }
    for (const auto* title : {"Save",
                              "Save As...",
                              "Close Project",
                              "Undo",
                              "Redo",
                              "Zoom to Fit",
                              "Select All",
                              "Drop Selection",
                              "Invert",
                              "Add New Layer",
                              "Delete Layer",
                              "Duplicate Layer",
                              "Merge Layer Down",
                              "Import From File...",
                              "Flip Horizontal",
                              "Flip Vertical",
                              "Resize...",
                              "Canvas Size...",
                              "Rotate / Zoom...",
                              "Layer Properties...",
                              "Align Object...",
                              "Repeat Last Action",
                              "No Plugins Installed"}) {
        EXPECT_FALSE(isEnabled(title)) << title;
    }
}

TEST_F(CommandTableTest, EnablesWhatNeedsAProjectWithOne) {
    makeProject(*store);
    for (const auto* title : {"Save", "Save As...", "Close Project", "Zoom to Fit", "Select All",
                              "Invert", "Add New Layer", "Duplicate Layer", "Import From File...",
                              "Flip Horizontal", "Flip Vertical", "Resize...", "Canvas Size...",
                              "Rotate / Zoom...", "Layer Properties...", "Align Object..."}) {
        EXPECT_TRUE(isEnabled(title)) << title;
    }
    EXPECT_FALSE(isEnabled("No Plugins Installed"));
}

TEST_F(CommandTableTest, RepeatsInAnyProjectOnceSomethingCanBeRepeated) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled("Repeat Last Action"));
    const CommandActions actions({*store, *coordinator});
    const QAction* repeat = actions.action(QStringLiteral("Repeat Last Action"));
    EXPECT_FALSE(repeat->isEnabled());
    run("Invert");
    runDeferred();
    EXPECT_TRUE(repeat->isEnabled());
    makeProject(*store);
    EXPECT_TRUE(isEnabled("Repeat Last Action"));
    run("Repeat Last Action");
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Inverted selected layer"));
    store->closeAllProjects();
    EXPECT_FALSE(isEnabled("Repeat Last Action"));
}

TEST_F(CommandTableTest, UndoesDownToTheFirstEntryAndRedoesUpToTheLast) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled("Undo"));
    EXPECT_FALSE(isEnabled("Redo"));
    edit(*store);
    EXPECT_TRUE(isEnabled("Undo"));
    EXPECT_FALSE(isEnabled("Redo"));
    run("Undo");
    EXPECT_FALSE(isEnabled("Undo"));
    EXPECT_TRUE(isEnabled("Redo"));
    run("Redo");
    EXPECT_TRUE(isEnabled("Undo"));
    EXPECT_FALSE(isEnabled("Redo"));
}

TEST_F(CommandTableTest, DeletesAndMergesLayersOnlyWhereThereAreOthers) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled("Delete Layer"));
    EXPECT_FALSE(isEnabled("Merge Layer Down"));
    run("Add New Layer");
    EXPECT_TRUE(isEnabled("Delete Layer"));
    EXPECT_TRUE(isEnabled("Merge Layer Down"));
    store->editActiveProject(
        [](model::PaintProject& project) { project.selectedLayerID = project.layers.front().id; });
    EXPECT_TRUE(isEnabled("Delete Layer"));
    EXPECT_FALSE(isEnabled("Merge Layer Down"));
    store->moveSelectedLayer(1);
    run("Merge Layer Down");
    EXPECT_EQ(store->activeProject()->layers.size(), 1U);
}

TEST_F(CommandTableTest, DropsASelectionThatIsThere) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled("Drop Selection"));
    run("Select All");
    EXPECT_TRUE(isEnabled("Drop Selection"));
    run("Drop Selection");
    EXPECT_FALSE(isEnabled("Drop Selection"));
}

TEST_F(CommandTableTest, CutAndCopyServeTheFocusedTextWhereNoPixelsAreSelected) {
    makeProject(*store);
    QLineEdit field(QStringLiteral("words"));
    field.show();
    field.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&field));
    field.setFocus();
    field.selectAll();
    run("Copy");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("words"));
    EXPECT_EQ(field.text(), QStringLiteral("words"));
    run("Cut");
    EXPECT_EQ(field.text(), QString());
    field.setText(QStringLiteral("more"));
    field.selectAll();
    run("Select All");
    run("Cut");
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Cut selected pixels"));
    EXPECT_EQ(field.text(), QStringLiteral("more"));
}

TEST_F(CommandTableTest, ZoomsWithoutAProjectAndStaysInsideTheLimits) {
    run("Zoom In");
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 1.25);
    run("Zoom In");
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 1.5625);
    for (int step = 0; step < 40; ++step) run("Zoom In");
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 64.0);
    for (int step = 0; step < 80; ++step) run("Zoom Out");
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 0.1);
}

TEST_F(CommandTableTest, ActionsFollowTheStore) {
    const CommandActions actions({*store, *coordinator});
    const QAction* save = actions.action(QStringLiteral("Save"));
    EXPECT_FALSE(save->isEnabled());
    makeProject(*store);
    runDeferred();
    EXPECT_TRUE(save->isEnabled());
    store->closeProject(*store->activeProjectID());
    runDeferred();
    EXPECT_FALSE(save->isEnabled());
}

TEST_F(CommandTableTest, FillsAMenuBarWithEachMenuOnce) {
    const CommandActions actions({*store, *coordinator});
    QMenuBar bar;
    actions.fill(bar);
    QStringList menus;
    for (const QAction* menu : bar.actions()) menus << menu->text();
    EXPECT_EQ(menus.join(u' '), QStringLiteral("File Edit Zoom Image Layers Object Plugins Help"));
}

TEST_F(CommandTableTest, KeepsTheQuickToolbarsOrderAndPredicates) {
    QStringList titles;
    for (const ToolbarItem& item : quickToolbarItems()) {
        titles << QString::fromLatin1(item.title == nullptr ? "-" : item.title);
    }
    EXPECT_EQ(titles.join(u','),
              QStringLiteral(
                  "New Project,Open Project,Save,Settings,-,Cut,Copy,Paste,-,Resize,Align Object,"
                  "Color Removal,Generative Fill,Trim Whitespace,-,Undo,Redo,-,Toggle Pixel Grid"));
    const ToolbarItem& grid = quickToolbarItems().back();
    EXPECT_FALSE(grid.isEnabled(*store));
    EXPECT_STREQ(grid.symbol(*store), "grid");
    makeProject(*store);
    EXPECT_TRUE(grid.isEnabled(*store));
    grid.run({*store, *coordinator});
    EXPECT_STREQ(grid.symbol(*store), "grid.circle.fill");
}

} // namespace
} // namespace quillabrae::shell
