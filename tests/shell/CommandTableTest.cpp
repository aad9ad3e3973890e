// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/commands/CommandTable.h"
#include "shell/controls/IconButton.h"
#include "shell/editor/QuickToolbar.h"
#include "shell/looks/Symbols.h"

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
    bool isEnabled(CommandID id) const { return command(id).isEnabled(*store); }
    void run(CommandID id) { command(id).run({*store, *coordinator}); }
};

TEST_F(CommandTableTest, StandsInItsOrder) {
    QStringList rows;
    for (const Command& row : commandTable()) {
        if (row.menu == CommandMenu::none) continue;
        rows << title(row.menu) + u'/' + QString::fromLatin1(row.isDivider() ? "-" : row.title);
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
        if (row.isDivider()) continue;
        for (const QKeySequence& key : shortcutsOf(row)) {
            EXPECT_FALSE(key.isEmpty()) << row.title;
            EXPECT_NE(key[0].key(), Qt::Key_unknown) << row.title;
            EXPECT_TRUE(keys.insert(key.toString()).second) << row.title;
        }
    }
    EXPECT_EQ(actions.action(CommandID::redo).shortcuts(),
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
    for (const CommandID id :
         {CommandID::newProject, CommandID::openProject, CommandID::quit, CommandID::cut,
          CommandID::copy, CommandID::paste, CommandID::zoomIn, CommandID::zoomOut,
          CommandID::preferences, CommandID::pluginLibrary, CommandID::paintNetQuickStart}) {
        EXPECT_TRUE(isEnabled(id)) << command(id).title;
    }
    for (const CommandID id : {CommandID::save,
                               CommandID::saveAs,
                               CommandID::closeProject,
                               CommandID::undo,
                               CommandID::redo,
                               CommandID::zoomToFit,
                               CommandID::selectAll,
                               CommandID::dropSelection,
                               CommandID::invert,
                               CommandID::addLayer,
                               CommandID::deleteLayer,
                               CommandID::duplicateLayer,
                               CommandID::mergeLayerDown,
                               CommandID::importLayer,
                               CommandID::flipHorizontal,
                               CommandID::flipVertical,
                               CommandID::resize,
                               CommandID::canvasSize,
                               CommandID::rotateZoom,
                               CommandID::layerProperties,
                               CommandID::alignObject,
                               CommandID::repeatLastAction,
                               CommandID::noPluginsInstalled}) {
        EXPECT_FALSE(isEnabled(id)) << command(id).title;
    }
}

TEST_F(CommandTableTest, EnablesWhatNeedsAProjectWithOne) {
    makeProject(*store);
    for (const CommandID id :
         {CommandID::save, CommandID::saveAs, CommandID::closeProject, CommandID::zoomToFit,
          CommandID::selectAll, CommandID::invert, CommandID::addLayer, CommandID::duplicateLayer,
          CommandID::importLayer, CommandID::flipHorizontal, CommandID::flipVertical,
          CommandID::resize, CommandID::canvasSize, CommandID::rotateZoom,
          CommandID::layerProperties, CommandID::alignObject}) {
        EXPECT_TRUE(isEnabled(id)) << command(id).title;
    }
    EXPECT_FALSE(isEnabled(CommandID::noPluginsInstalled));
}

TEST_F(CommandTableTest, RepeatsInAnyProjectOnceSomethingCanBeRepeated) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled(CommandID::repeatLastAction));
    const CommandActions actions({*store, *coordinator});
    const QAction* repeat = &actions.action(CommandID::repeatLastAction);
    EXPECT_FALSE(repeat->isEnabled());
    run(CommandID::invert);
    runDeferred();
    EXPECT_TRUE(repeat->isEnabled());
    makeProject(*store);
    EXPECT_TRUE(isEnabled(CommandID::repeatLastAction));
    run(CommandID::repeatLastAction);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Inverted selected layer"));
    store->closeAllProjects();
    EXPECT_FALSE(isEnabled(CommandID::repeatLastAction));
}

TEST_F(CommandTableTest, UndoesDownToTheFirstEntryAndRedoesUpToTheLast) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled(CommandID::undo));
    EXPECT_FALSE(isEnabled(CommandID::redo));
    edit(*store);
    EXPECT_TRUE(isEnabled(CommandID::undo));
    EXPECT_FALSE(isEnabled(CommandID::redo));
    run(CommandID::undo);
    EXPECT_FALSE(isEnabled(CommandID::undo));
    EXPECT_TRUE(isEnabled(CommandID::redo));
    run(CommandID::redo);
    EXPECT_TRUE(isEnabled(CommandID::undo));
    EXPECT_FALSE(isEnabled(CommandID::redo));
}

TEST_F(CommandTableTest, DeletesAndMergesLayersOnlyWhereThereAreOthers) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled(CommandID::deleteLayer));
    EXPECT_FALSE(isEnabled(CommandID::mergeLayerDown));
    run(CommandID::addLayer);
    EXPECT_TRUE(isEnabled(CommandID::deleteLayer));
    EXPECT_TRUE(isEnabled(CommandID::mergeLayerDown));
    store->editActiveProject(
        [](model::PaintProject& project) { project.selectedLayerID = project.layers.front().id; });
    EXPECT_TRUE(isEnabled(CommandID::deleteLayer));
    EXPECT_FALSE(isEnabled(CommandID::mergeLayerDown));
    store->moveSelectedLayer(1);
    run(CommandID::mergeLayerDown);
    EXPECT_EQ(store->activeProject()->layers.size(), 1U);
}

TEST_F(CommandTableTest, DropsASelectionThatIsThere) {
    makeProject(*store);
    EXPECT_FALSE(isEnabled(CommandID::dropSelection));
    run(CommandID::selectAll);
    EXPECT_TRUE(isEnabled(CommandID::dropSelection));
    run(CommandID::dropSelection);
    EXPECT_FALSE(isEnabled(CommandID::dropSelection));
}

TEST_F(CommandTableTest, CutAndCopyServeTheFocusedTextWhereNoPixelsAreSelected) {
    makeProject(*store);
    QLineEdit field(QStringLiteral("words"));
    field.show();
    field.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&field));
    field.setFocus();
    field.selectAll();
    run(CommandID::copy);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("words"));
    EXPECT_EQ(field.text(), QStringLiteral("words"));
    run(CommandID::cut);
    EXPECT_EQ(field.text(), QString());
    field.setText(QStringLiteral("more"));
    field.selectAll();
    run(CommandID::selectAll);
    run(CommandID::cut);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Cut selected pixels"));
    EXPECT_EQ(field.text(), QStringLiteral("more"));
}

TEST_F(CommandTableTest, ZoomsWithoutAProjectAndStaysInsideTheLimits) {
    run(CommandID::zoomIn);
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 1.25);
    run(CommandID::zoomIn);
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 1.5625);
    for (int step = 0; step < 40; ++step) run(CommandID::zoomIn);
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 64.0);
    for (int step = 0; step < 80; ++step) run(CommandID::zoomOut);
    EXPECT_DOUBLE_EQ(store->settings().zoomScale, 0.1);
}

TEST_F(CommandTableTest, ActionsFollowTheStore) {
    const CommandActions actions({*store, *coordinator});
    const QAction* save = &actions.action(CommandID::save);
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

TEST_F(CommandTableTest, HasARowForEachCommandThatCanBeShownAndRun) {
    std::set<CommandID> seen;
    for (const Command& row : commandTable()) {
        if (row.isDivider()) {
            EXPECT_NE(row.menu, CommandMenu::none);
            EXPECT_EQ(row.title, nullptr);
            continue;
        }
        EXPECT_TRUE(seen.insert(row.id).second) << row.title;
        EXPECT_EQ(&command(row.id), &row) << row.title;
        EXPECT_NE(row.isEnabled, nullptr) << row.title;
        EXPECT_NE(row.run, nullptr) << row.title;
        // A button needs both.
        EXPECT_EQ(row.symbol == nullptr, row.help == nullptr) << row.title;
        if (row.help == nullptr) continue;
        EXPECT_TRUE(Symbols::isKnown(QString::fromLatin1(row.symbol))) << row.title;
        EXPECT_TRUE(QString::fromLatin1(row.help).endsWith(u'.')) << row.title;
    }
    EXPECT_EQ(seen.size(), std::size_t{commandCount});
}

TEST_F(CommandTableTest, ShowsEachCommandThatHasNoMenuInTheQuickToolbar) {
    const auto items = quickToolbarItems();
    for (const Command& row : commandTable()) {
        if (row.menu != CommandMenu::none) continue;
        EXPECT_EQ(std::ranges::count(items, row.id, &ToolbarItem::id), 1) << row.title;
    }
}

TEST_F(CommandTableTest, MakesOneActionOfEachRow) {
    const CommandActions actions({*store, *coordinator});
    std::set<const QAction*> seen;
    for (const Command& row : commandTable()) {
        if (row.isDivider()) continue;
        const QAction& action = actions.action(row.id);
        EXPECT_TRUE(seen.insert(&action).second) << row.title;
        EXPECT_EQ(action.text(), QString::fromLatin1(row.title));
        EXPECT_EQ(action.statusTip(), QString::fromLatin1(row.help)) << row.title;
        EXPECT_EQ(action.shortcuts(), shortcutsOf(row)) << row.title;
        EXPECT_EQ(action.isEnabled(), row.isEnabled(*store)) << row.title;
    }
}

TEST_F(CommandTableTest, CallsCommandsByTheirTitleWithoutDots) {
    EXPECT_EQ(plainTitle(command(CommandID::resize)), QStringLiteral("Resize"));
    EXPECT_EQ(plainTitle(command(CommandID::paste)), QStringLiteral("Paste"));
}

TEST_F(CommandTableTest, GivesTheQuickToolbarItsTitlesSymbolsAndHelp) {
    QStringList rows;
    for (const ToolbarItem& item : quickToolbarItems()) {
        if (item.isDivider())
            rows << QStringLiteral("-");
        else
            rows << QStringList({item.title(), QString::fromLatin1(item.symbol(*store)),
                                 QString::fromLatin1(command(item.id).help)})
                        .join(u'|');
    }
    // clang-format off
    const QStringList expected{
        QStringLiteral("New Project|doc.badge.plus|Creates a blank project in the current window."),
        QStringLiteral("Open Project|folder.badge.plus|Opens a saved .quillabrae project file."),
        QStringLiteral("Save|square.and.arrow.down|Saves to the current file, or asks for a location the first time."),
        QStringLiteral("Settings|gearshape|Opens Quillabrae settings."),
        QStringLiteral("-"),
        QStringLiteral("Cut|scissors|Cuts selected canvas pixels, or cuts text when editing a field."),
        QStringLiteral("Copy|doc.on.doc|Copies selected canvas pixels, or copies text when editing a field."),
        QStringLiteral("Paste|clipboard|Pastes an image from the clipboard as pixels."),
        QStringLiteral("-"),
        QStringLiteral("Resize|arrow.up.left.and.arrow.down.right|Stretches the active image to a new pixel size."),
        QStringLiteral("Align Object|square.grid.3x3|Aligns non-transparent pixels within the selection or full canvas."),
        QStringLiteral("Color Removal|eraser.line.dashed|Smoothly removes a chosen color from the active layer and previews the result."),
        QStringLiteral("Generative Fill|sparkles|Uses your OpenAI API key to replace the selected pixels from a prompt."),
        QStringLiteral("Trim Whitespace|crop|Removes transparent whitespace around the image and shrinks the canvas to fit."),
        QStringLiteral("-"),
        QStringLiteral("Undo|arrow.uturn.backward|Steps back to the previous history item."),
        QStringLiteral("Redo|arrow.uturn.forward|Restores the next history item."),
        QStringLiteral("-"),
        QStringLiteral("Toggle Pixel Grid|grid|Shows pixel boundaries when zoomed in close enough."),
    };
    // clang-format on
    EXPECT_EQ(rows.join(u'\n'), expected.join(u'\n'));
}

TEST_F(CommandTableTest, EnablesTheButtonsWithoutAMenuWhileThereIsSomethingToWorkOn) {
    const auto buttons = {CommandID::colorRemoval, CommandID::trimWhitespace,
                          CommandID::togglePixelGrid};
    for (const CommandID id : buttons) EXPECT_FALSE(isEnabled(id)) << command(id).title;
    makeProject(*store);
    for (const CommandID id : buttons) EXPECT_TRUE(isEnabled(id)) << command(id).title;
    EXPECT_FALSE(isEnabled(CommandID::generativeFill));
    run(CommandID::selectAll);
    EXPECT_TRUE(isEnabled(CommandID::generativeFill));
}

TEST_F(CommandTableTest, ShowsInTheQuickToolbarThatThePixelGridIsOn) {
    const ToolbarItem& grid = quickToolbarItems().back();
    EXPECT_STREQ(grid.symbol(*store), "grid");
    makeProject(*store);
    run(grid.id);
    EXPECT_STREQ(grid.symbol(*store), "grid.circle.fill");
}

TEST_F(CommandTableTest, AButtonOfTheQuickToolbarIsItsCommandsRow) {
    makeProject(*store);
    const QuickToolbar bar({*store, *coordinator});
    for (const ToolbarItem& item : quickToolbarItems()) {
        if (item.isDivider()) continue;
        const auto buttons = bar.findChildren<IconButton*>();
        const auto found = std::ranges::find(buttons, item.title(), &QWidget::accessibleName);
        ASSERT_NE(found, buttons.end()) << qPrintable(item.title());
        const Command& row = command(item.id);
        EXPECT_EQ((*found)->accessibleDescription(), QString::fromLatin1(row.help));
        EXPECT_EQ((*found)->isEnabled(), row.isEnabled(*store)) << row.title;
    }
}

} // namespace
} // namespace quillabrae::shell
