// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <span>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class WindowCoordinator;

/// What a command works on.
struct CommandContext {
    store::ProjectStore& store;
    WindowCoordinator& windows;
};

/// The menus, in the order of the menu bar. `none` is for commands that only buttons lead to.
enum class CommandMenu { file, edit, zoom, image, layers, object, plugins, help, none };
constexpr int commandMenuCount = static_cast<int>(CommandMenu::none);

/// The commands, in the order of their table. `divider` is none of them: a line between others.
enum class CommandID {
    newProject,
    openProject,
    save,
    saveAs,
    closeProject,
    quit,
    undo,
    redo,
    cut,
    copy,
    selectAll,
    dropSelection,
    paste,
    preferences,
    zoomIn,
    zoomInWithEquals,
    zoomOut,
    zoomToFit,
    resize,
    canvasSize,
    invert,
    addLayer,
    deleteLayer,
    duplicateLayer,
    mergeLayerDown,
    importLayer,
    flipHorizontal,
    flipVertical,
    rotateZoom,
    layerProperties,
    alignObject,
    repeatLastAction,
    pluginLibrary,
    noPluginsInstalled,
    paintNetQuickStart,
    colorRemoval,
    generativeFill,
    trimWhitespace,
    togglePixelGrid,
    divider
};
constexpr int commandCount = static_cast<int>(CommandID::divider);

/// One command, or a divider of a menu, which has a menu and no more.
struct Command {
    CommandMenu menu = CommandMenu::none;
    CommandID id = CommandID::divider;
    /// In English, as it is the name of the command too; `title` has it as the user reads it.
    const char* title = nullptr;
    /// Key sequences in portable text, separated by blanks; the menu shows the first.
    const char* shortcuts = nullptr;
    bool (*isEnabled)(const store::ProjectStore& store) = nullptr;
    void (*run)(const CommandContext& context) = nullptr;
    /// What its button shows; null for a command that has no button.
    const char* symbol = nullptr;
    /// What it does, in a sentence; null for a command whose title says it all.
    const char* help = nullptr;

    constexpr bool isDivider() const { return id == CommandID::divider; }
};

/// Every command and every divider, menu by menu.
std::span<const Command> commandTable();
/// The row of a command. `id` is not `divider`.
const Command& command(CommandID id);
/// The command's key sequences, the one that menus show first.
QList<QKeySequence> shortcutsOf(const Command& command);
/// The title in the user's language. The command is no divider.
QString title(const Command& command);
/// What it does, in the user's language; empty for a command without a help text.
QString help(const Command& command);
/// The title without the dots that announce a dialog: what buttons and sentences call the command.
QString plainTitle(const Command& command);

/// Of a menu of the bar, so not of `none`.
QString title(CommandMenu menu);

/// What commands ask of the store before they can run.
namespace CommandPredicates {
bool always(const store::ProjectStore& store);
bool never(const store::ProjectStore& store);
bool hasActiveProject(const store::ProjectStore& store);
bool canUndo(const store::ProjectStore& store);
bool canRedo(const store::ProjectStore& store);
bool canDropSelection(const store::ProjectStore& store);
/// Whether the active project has a layer besides the selected one.
bool canDeleteLayer(const store::ProjectStore& store);
/// Whether there is a layer beneath the selected one.
bool canMergeLayerDown(const store::ProjectStore& store);
/// Whether there is a project and something that was done to one can be done to it.
bool canRepeatLastAction(const store::ProjectStore& store);
/// Whether there are selected pixels to fill.
bool canGenerativeFill(const store::ProjectStore& store);
} // namespace CommandPredicates

/// What several places of the interface run.
namespace CommandSteps {
void undo(const CommandContext& context);
void redo(const CommandContext& context);
/// Of the selected pixels, or else of the text that has the focus.
void cut(const CommandContext& context);
void copy(const CommandContext& context);
void mergeLayerDown(const CommandContext& context);
} // namespace CommandSteps

} // namespace quillabrae::shell
