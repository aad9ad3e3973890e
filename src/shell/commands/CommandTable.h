// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeySequence>
#include <QList>

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

/// The menus, in the order of the menu bar.
enum class CommandMenu { file, edit, zoom, image, layers, object, plugins, help };

/// One row of the menus. A row without a title is a divider.
struct Command {
    CommandMenu menu;
    const char* title;
    /// Key sequences in portable text, separated by blanks; the menu shows the first.
    const char* shortcuts;
    bool (*isEnabled)(const store::ProjectStore& store);
    void (*run)(const CommandContext& context);
};

/// Every command that has a menu row, menu by menu.
std::span<const Command> commandTable();
/// The command's key sequences, the one that menus show first.
QList<QKeySequence> shortcutsOf(const Command& command);

const char* title(CommandMenu menu);
constexpr int commandMenuCount = 8;

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
