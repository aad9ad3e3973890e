// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/TourPages.h"

#include "shell/commands/CommandTable.h"

namespace quillabrae::shell {
namespace {

constexpr std::array workspacePoints{
    TourPoint{"Tabs", "Each picture is a tab at the top. A dot marks what is not saved."},
    TourPoint{"Panels",
              "Tools, Colors, History and Layers float where you expect them. Drag one by its "
              "heading, or fold it up."},
    TourPoint{"Toolbar", "Common commands, and beside them the options of the current tool."},
    TourPoint{"Canvas",
              "Ctrl and the wheel zoom around the pointer, {Zoom to Fit} shows the whole picture."},
};
constexpr std::array toolPoints{
    TourPoint{"Two colors",
              "The left button works with the primary color, the right one with the secondary."},
    TourPoint{"Shift", "Keeps shapes and selections square, and lines at steps of 45 degrees."},
    TourPoint{"Not final at once",
              "Shapes and text can be changed until you press Escape or go on."},
    TourPoint{"What does it do?", "Rest the pointer on a tool for two seconds."},
};
constexpr std::array shortcutPoints{
    TourPoint{"Letters do not choose tools",
              "Click a tool, or reach it with the Tab key and press Space."},
};
constexpr std::array layerPoints{
    TourPoint{"One layer at a time", "Tools and commands work on the layer that is selected."},
    TourPoint{"Order and names",
              "Drag a layer to another place. Double-click its name to rename it."},
    TourPoint{"Eye and opacity",
              "The eye hides a layer, the slider beneath the list lets others shine through."},
    TourPoint{"Blending", "Layers lie over each other as they are: there are no blend modes."},
    TourPoint{"History",
              "Press any step to go back to it. The dimmed ones are still there for {Redo}."},
};
constexpr std::array selectionPoints{
    TourPoint{"Add and take away", "Ctrl adds to a selection, Alt takes from it."},
    TourPoint{"Two move tools",
              "Move Selected Pixels takes the pixels along, Move Selection only the outline."},
    TourPoint{"Arrow keys", "Move it by one pixel, with Ctrl by twenty."},
    TourPoint{"Done", "{Drop Selection} lets go of it and lays moved pixels down."},
};
constexpr std::array savingPoints{
    TourPoint{"Projects", "A .quillabrae project keeps every layer."},
    TourPoint{"Pictures",
              "Choose PNG, JPEG, WebP or another format in {Save As...} for a flat picture."},
    TourPoint{"Closing", "{Close Project} asks before it lets unsaved work go."},
    TourPoint{"After a crash", "Your tabs come back with their history."},
};

using enum TourPage::Figure;

constexpr std::array pages{
    TourPage{"Workspace", "macwindow", "The places you know, in one window", widePicture,
             "workspace", "The editor window with its tabs, toolbar and floating panels",
             workspacePoints},
    TourPage{"Tools", "paintbrush", "Tools you know by name", tools, nullptr, nullptr, toolPoints},
    TourPage{"Shortcuts", "keyboard", "Most shortcuts are the same", shortcuts, nullptr, nullptr,
             shortcutPoints},
    TourPage{"Layers", "square.stack.3d.down.right", "Layers and history", tallPicture, "layers",
             "The panels of history and layers", layerPoints},
    TourPage{"Selections", "selection.pin.in.out", "Selecting and moving", widePicture, "selection",
             "A selected part of a picture, with its handles", selectionPoints},
    TourPage{"Saving", "square.and.arrow.down", "Projects and pictures", widePicture, "saving",
             "The dialog that saves, with its list of formats", savingPoints},
};

QString keysOf(QStringView title) {
    for (const Command& command : commandTable()) {
        if (command.isDivider() || title != QLatin1StringView(command.title)) continue;
        const auto keys = shortcutsOf(command);
        if (!keys.isEmpty()) return keys.first().toString(QKeySequence::NativeText);
    }
    return {};
}

} // namespace

std::span<const TourPage> tourPages() {
    return pages;
}

QString withShortcuts(const char* text) {
    QString words = QString::fromLatin1(text);
    qsizetype start = 0;
    while ((start = words.indexOf(u'{')) >= 0) {
        const qsizetype end = words.indexOf(u'}', start);
        if (end < 0) break;
        const QString keys = keysOf(QStringView(words).mid(start + 1, end - start - 1));
        words.replace(start, end + 1 - start, keys);
    }
    return words;
}

} // namespace quillabrae::shell
