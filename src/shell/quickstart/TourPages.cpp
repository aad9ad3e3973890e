// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/TourPages.h"

#include "shell/commands/CommandTable.h"

#include <QCoreApplication>

namespace quillabrae::shell {
namespace {

constexpr std::array workspacePoints{
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Tabs"),
              QT_TRANSLATE_NOOP(
                  "TourTexts", "Each picture is a tab at the top. A dot marks what is not saved.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Panels"),
              QT_TRANSLATE_NOOP(
                  "TourTexts",
                  "Tools, Colors, History and Layers float where you expect them. Drag one by its "
                  "heading, or fold it up.")},
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Toolbar"),
        QT_TRANSLATE_NOOP("TourTexts",
                          "Common commands, and beside them the options of the current tool.")},
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Canvas"),
        QT_TRANSLATE_NOOP(
            "TourTexts",
            "Ctrl and the wheel zoom around the pointer, {Zoom to Fit} shows the whole picture.")},
};
constexpr std::array toolPoints{
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Two colors"),
        QT_TRANSLATE_NOOP(
            "TourTexts",
            "The left button works with the primary color, the right one with the secondary.")},
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Shift"),
        QT_TRANSLATE_NOOP("TourTexts",
                          "Keeps shapes and selections square, and lines at steps of 45 degrees.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Not final at once"),
              QT_TRANSLATE_NOOP("TourTexts",
                                "Shapes and text can be changed until you press Escape or go on.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "What does it do?"),
              QT_TRANSLATE_NOOP("TourTexts", "Rest the pointer on a tool for two seconds.")},
};
constexpr std::array shortcutPoints{
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Letters do not choose tools"),
              QT_TRANSLATE_NOOP("TourTexts",
                                "Click a tool, or reach it with the Tab key and press Space.")},
};
constexpr std::array layerPoints{
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "One layer at a time"),
        QT_TRANSLATE_NOOP("TourTexts", "Tools and commands work on the layer that is selected.")},
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Order and names"),
        QT_TRANSLATE_NOOP("TourTexts",
                          "Drag a layer to another place. Double-click its name to rename it.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Eye and opacity"),
              QT_TRANSLATE_NOOP(
                  "TourTexts",
                  "The eye hides a layer, the slider beneath the list lets others shine through.")},
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Blending"),
        QT_TRANSLATE_NOOP("TourTexts",
                          "Layers lie over each other as they are: there are no blend modes.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "History"),
              QT_TRANSLATE_NOOP(
                  "TourTexts",
                  "Press any step to go back to it. The dimmed ones are still there for {Redo}.")},
};
constexpr std::array selectionPoints{
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Add and take away"),
              QT_TRANSLATE_NOOP("TourTexts", "Ctrl adds to a selection, Alt takes from it.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Two move tools"),
              QT_TRANSLATE_NOOP(
                  "TourTexts",
                  "Move Selected Pixels takes the pixels along, Move Selection only the outline.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Arrow keys"),
              QT_TRANSLATE_NOOP("TourTexts", "Move it by one pixel, with Ctrl by twenty.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Done"),
              QT_TRANSLATE_NOOP("TourTexts",
                                "{Drop Selection} lets go of it and lays moved pixels down.")},
};
constexpr std::array savingPoints{
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Projects"),
              QT_TRANSLATE_NOOP("TourTexts", "A .quillabrae project keeps every layer.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "Pictures"),
              QT_TRANSLATE_NOOP(
                  "TourTexts",
                  "Choose PNG, JPEG, WebP or another format in {Save As...} for a flat picture.")},
    TourPoint{
        QT_TRANSLATE_NOOP("TourTexts", "Closing"),
        QT_TRANSLATE_NOOP("TourTexts", "{Close Project} asks before it lets unsaved work go.")},
    TourPoint{QT_TRANSLATE_NOOP("TourTexts", "After a crash"),
              QT_TRANSLATE_NOOP("TourTexts", "Your tabs come back with their history.")},
};

using enum TourPage::Figure;

constexpr std::array pages{
    TourPage{QT_TRANSLATE_NOOP("TourTexts", "Workspace"), "macwindow",
             QT_TRANSLATE_NOOP("TourTexts", "The places you know, in one window"), widePicture,
             "workspace",
             QT_TRANSLATE_NOOP("TourTexts",
                               "The editor window with its tabs, toolbar and floating panels"),
             workspacePoints},
    TourPage{QT_TRANSLATE_NOOP("TourTexts", "Tools"), "paintbrush",
             QT_TRANSLATE_NOOP("TourTexts", "Tools you know by name"), tools, nullptr, nullptr,
             toolPoints},
    TourPage{QT_TRANSLATE_NOOP("TourTexts", "Shortcuts"), "keyboard",
             QT_TRANSLATE_NOOP("TourTexts", "Most shortcuts are the same"), shortcuts, nullptr,
             nullptr, shortcutPoints},
    TourPage{QT_TRANSLATE_NOOP("TourTexts", "Layers"), "square.stack.3d.down.right",
             QT_TRANSLATE_NOOP("TourTexts", "Layers and history"), tallPicture, "layers",
             QT_TRANSLATE_NOOP("TourTexts", "The panels of history and layers"), layerPoints},
    TourPage{QT_TRANSLATE_NOOP("TourTexts", "Selections"), "selection.pin.in.out",
             QT_TRANSLATE_NOOP("TourTexts", "Selecting and moving"), widePicture, "selection",
             QT_TRANSLATE_NOOP("TourTexts", "A selected part of a picture, with its handles"),
             selectionPoints},
    TourPage{QT_TRANSLATE_NOOP("TourTexts", "Saving"), "square.and.arrow.down",
             QT_TRANSLATE_NOOP("TourTexts", "Projects and pictures"), widePicture, "saving",
             QT_TRANSLATE_NOOP("TourTexts", "The dialog that saves, with its list of formats"),
             savingPoints},
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

QString tourText(const char* text) {
    return QCoreApplication::translate("TourTexts", text);
}

QString withShortcuts(const char* text) {
    QString words = tourText(text);
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
