// SPDX-License-Identifier: GPL-3.0-or-later
// Every command is run once, and what came of it is told by what it showed or changed.
#include "shell/ShellTest.h"
#include "shell/commands/CommandTable.h"

#include <QSignalSpy>

#include <algorithm>
#include <array>

namespace quillabrae::shell {
namespace {

struct Reach {
    CommandID id = CommandID::divider;
    /// One of the marks that it leaves.
    const char* mark = nullptr;
};

using enum CommandID;

constexpr std::array reaches{
    Reach{newProject, "dialog new"},
    Reach{openProject, "panel open"},
    Reach{save, "status Saved boat.quillabrae"},
    Reach{saveAs, "panel destination boat"},
    Reach{closeProject, "panel save boat"},
    Reach{quit, "quit"},
    Reach{undo, "status Restored Select All"},
    Reach{redo, "status Restored Edit"},
    Reach{cut, "status Cut selected pixels"},
    Reach{copy, "status Copied selected pixels"},
    Reach{selectAll, "status Selected canvas pixels"},
    Reach{dropSelection, "status Deselected pixels"},
    Reach{paste, "status Created Pasted Image from clipboard"},
    Reach{preferences, "window Settings"},
    Reach{zoomIn, "zoom 1.25"},
    Reach{zoomInWithEquals, "zoom 1.25"},
    Reach{zoomOut, "zoom 0.8"},
    Reach{zoomToFit, "status Zoomed to fit canvas"},
    Reach{resize, "dialog resize"},
    Reach{canvasSize, "dialog canvas size"},
    Reach{invert, "status Inverted selected area"},
    Reach{addLayer, "layers 3"},
    Reach{deleteLayer, "layers 1"},
    Reach{duplicateLayer, "layers 3"},
    Reach{mergeLayerDown, "layers 1"},
    Reach{importLayer, "panel import"},
    Reach{flipHorizontal, "status Flip Horizontal applied"},
    Reach{flipVertical, "status Flip Vertical applied"},
    Reach{rotateZoom, "dialog rotate"},
    Reach{layerProperties, "dialog layer"},
    Reach{alignObject, "dialog align"},
    Reach{repeatLastAction, "status Inverted selected area"},
    Reach{pluginLibrary, "window Plugin Library"},
    Reach{paintNetQuickStart, "window Paint.NET Quick Start"},
    Reach{colorRemoval, "dialog color removal"},
    Reach{generativeFill, "dialog fill"},
    Reach{trimWhitespace, "status No transparent whitespace to trim"},
    Reach{togglePixelGrid, "grid 1"},
};

class CommandReachTest : public ShellTest, public testing::WithParamInterface<Reach> {
protected:
    /// A picture of the project's size with paint in one corner.
    static model::PngBytes redCorner() {
        QImage picture(8, 6, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        picture.setPixelColor(7, 5, Qt::red);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        picture.save(&file, "png");
        return model::PngBytes(file.data());
    }
    /// A project in which everything can be done: two layers, a selection, steps on both sides.
    void makeRichProject() {
        makeProject(*store);
        saveTo(*store, QStringLiteral("boat.quillabrae"));
        store->addLayer();
        store->editActiveProject([](model::PaintProject& project) {
            project.selectedLayer()->bitmapPNGData = redCorner();
        });
        store->selectAllCanvas();
        store->invertActiveImage();
        edit(*store);
        store->undo(*store->activeProjectID());
        // In which the canvas fits at full size.
        store->setCanvasViewportSize({188, 186});
        store->setStatusMessage(QString());
        copyPicture({20, 4});
    }
    /// What the program shows and holds, a line for each thing.
    QStringList state() const {
        QStringList lines;
        for (const QString& panel : panels.shown) lines << QStringLiteral("panel ") + panel;
        for (const QString& dialog : dialogs.shown) lines << QStringLiteral("dialog ") + dialog;
        for (const WindowRole role : windows.made)
            lines << QStringLiteral("window ") + windowTraits(role).title;
        lines << QStringLiteral("status ") + store->statusMessage();
        lines << QStringLiteral("zoom %1").arg(store->settings().zoomScale);
        lines << QStringLiteral("grid %1").arg(static_cast<int>(store->settings().showsPixelGrid));
        if (const auto* project = store->activeProject()) {
            lines << QStringLiteral("layers %1").arg(project->layers.size());
            lines << QStringLiteral("selected %1").arg(static_cast<int>(project->isCanvasSelected));
            lines << QStringLiteral("step %1").arg(store->history(project->id).selectedIndex);
            lines << titles(*store, project->id).join(u',');
        }
        return lines;
    }
};

TEST_P(CommandReachTest, LeavesItsMark) {
    makeRichProject();
    const QSignalSpy quitting(coordinator.get(), &WindowCoordinator::quitRequested);
    const Command& row = command(GetParam().id);
    ASSERT_TRUE(row.isEnabled(*store));
    const QStringList before = state();
    row.run({*store, *coordinator});
    runDeferred();
    QStringList marks = state();
    for (const QString& line : before) marks.removeOne(line);
    if (!quitting.isEmpty()) marks << QStringLiteral("quit");
    EXPECT_TRUE(marks.contains(QString::fromLatin1(GetParam().mark)))
        << row.title << ": " << qPrintable(marks.join(u'\n'));
}

INSTANTIATE_TEST_SUITE_P(EachCommand, CommandReachTest, testing::ValuesIn(reaches));

TEST(CommandReach, HasAMarkForEachCommandThatCanRun) {
    for (const Command& row : commandTable()) {
        if (row.isDivider() || row.id == noPluginsInstalled) continue;
        EXPECT_EQ(std::ranges::count(reaches, row.id, &Reach::id), 1) << row.title;
    }
}

} // namespace
} // namespace quillabrae::shell
