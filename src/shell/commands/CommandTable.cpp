// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/CommandTable.h"

#include "shell/app/WindowCoordinator.h"
#include "shell/commands/FocusedText.h"
#include "shell/dialogs/ResizeFields.h"
#include "store/ProjectStore.h"

#include <QApplication>

#include <array>

namespace quillabrae::shell {
namespace {

using namespace CommandPredicates;
using namespace CommandSteps;
using enum CommandMenu;
using Context = CommandContext;

void zoomToFit(const Context& context) {
    context.store.performZoomToFitCanvas(store::StatusUpdate::shown);
}

constexpr Command divider(CommandMenu menu) {
    return {menu, nullptr, nullptr, nullptr, nullptr};
}

// clang-format off
constexpr std::array commands{
    Command{file, "New Project", "Ctrl+N", always, [](const Context& c) { c.windows.createNewProject(); }},
    Command{file, "Open Project...", "Ctrl+O", always, [](const Context& c) { c.windows.openProjectFromPanel(); }},
    divider(file),
    Command{file, "Save", "Ctrl+S", hasActiveProject, [](const Context& c) { c.store.saveActiveProject(); }},
    Command{file, "Save As...", "Ctrl+Shift+S", hasActiveProject, [](const Context& c) { c.store.saveActiveProjectAs(); }},
    divider(file),
    Command{file, "Close Project", "Ctrl+W", hasActiveProject, [](const Context& c) { c.windows.closeActiveProject(); }},
    divider(file),
    Command{file, "Quit", "Ctrl+Q", always, [](const Context& c) { c.windows.requestQuit(); }},

    Command{edit, "Undo", "Ctrl+Z", canUndo, undo},
    Command{edit, "Redo", "Ctrl+Shift+Z Ctrl+Y", canRedo, redo},
    divider(edit),
    Command{edit, "Cut", "Ctrl+X", always, cut},
    Command{edit, "Copy", "Ctrl+C", always, copy},
    Command{edit, "Select All", "Ctrl+A", hasActiveProject, [](const Context& c) { c.store.selectAllCanvas(); }},
    Command{edit, "Drop Selection", "Esc", canDropSelection, [](const Context& c) { c.store.dropSelection(); }},
    Command{edit, "Paste", "Ctrl+V", always, [](const Context& c) { c.windows.pasteImageFromClipboard(); }},
    divider(edit),
    Command{edit, "Preferences", "Ctrl+,", always, [](const Context& c) { c.windows.showSettings(); }},

    // Twice, so that each key is seen and neither needs Shift.
    Command{zoom, "Zoom In", "Ctrl++", always, [](const Context& c) { c.store.zoomIn(); }},
    Command{zoom, "Zoom In", "Ctrl+=", always, [](const Context& c) { c.store.zoomIn(); }},
    Command{zoom, "Zoom Out", "Ctrl+-", always, [](const Context& c) { c.store.zoomOut(); }},
    Command{zoom, "Zoom to Fit", "Ctrl+B", hasActiveProject, zoomToFit},

    Command{image, "Resize...", "Ctrl+R", hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::image); }},
    Command{image, "Canvas Size...", "Ctrl+Shift+R", hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::canvas); }},
    Command{image, "Invert", "Ctrl+Shift+I", hasActiveProject, [](const Context& c) { c.store.invertActiveImage(); }},

    Command{layers, "Add New Layer", "Ctrl+Shift+N", hasActiveProject, [](const Context& c) { c.store.addLayer(); }},
    Command{layers, "Delete Layer", "Ctrl+Shift+Del Ctrl+Shift+Backspace", canDeleteLayer, [](const Context& c) { c.store.deleteSelectedLayer(); }},
    Command{layers, "Duplicate Layer", "Ctrl+Shift+D", hasActiveProject, [](const Context& c) { c.store.duplicateSelectedLayer(); }},
    Command{layers, "Merge Layer Down", "Ctrl+M", canMergeLayerDown, mergeLayerDown},
    Command{layers, "Import From File...", "", hasActiveProject, [](const Context& c) { c.store.importLayerFromFile(); }},
    divider(layers),
    Command{layers, "Flip Horizontal", "", hasActiveProject, [](const Context& c) { c.store.flipSelectedLayer(store::FlipDirection::horizontal); }},
    Command{layers, "Flip Vertical", "", hasActiveProject, [](const Context& c) { c.store.flipSelectedLayer(store::FlipDirection::vertical); }},
    Command{layers, "Rotate / Zoom...", "Ctrl+Alt+Z", hasActiveProject, [](const Context& c) { c.windows.showRotateZoomDialog(); }},
    divider(layers),
    Command{layers, "Layer Properties...", "", hasActiveProject, [](const Context& c) { c.windows.showLayerPropertiesDialog(); }},

    Command{object, "Align Object...", "Ctrl+Shift+F", hasActiveProject, [](const Context& c) { c.windows.showAlignObjectDialog(); }},
    Command{object, "Repeat Last Action", "Ctrl+F", canRepeatLastAction, [](const Context& c) { c.store.repeatLastAction(); }},

    Command{plugins, "Plugin Library...", "Ctrl+Shift+P", always, [](const Context& c) { c.windows.showPluginLibrary(); }},
    divider(plugins),
    Command{plugins, "No Plugins Installed", "", never, [](const Context&) {}},

    Command{help, "Paint.NET Quick Start", "", always, [](const Context& c) { c.windows.showPaintNetQuickStart(); }},
};
// clang-format on

constexpr std::array<const char*, commandMenuCount> menuTitles{
    "File", "Edit", "Zoom", "Image", "Layers", "Object", "Plugins", "Help"};

} // namespace

std::span<const Command> commandTable() {
    return commands;
}

QList<QKeySequence> shortcutsOf(const Command& command) {
    QList<QKeySequence> keys;
    const QString texts = QString::fromLatin1(command.shortcuts);
    for (const QString& text : texts.split(QChar(u' '), Qt::SkipEmptyParts))
        keys.append(QKeySequence(text, QKeySequence::PortableText));
    return keys;
}

const char* title(CommandMenu menu) {
    return menuTitles.at(static_cast<std::size_t>(menu));
}

} // namespace quillabrae::shell

namespace quillabrae::shell::CommandSteps {

void undo(const CommandContext& context) {
    if (const auto id = context.store.activeProjectID()) context.store.undo(*id);
}

void redo(const CommandContext& context) {
    if (const auto id = context.store.activeProjectID()) context.store.redo(*id);
}

void cut(const CommandContext& context) {
    if (!context.store.cutSelectedCanvasPixels())
        FocusedText::invoke(QApplication::focusWidget(), "cut()");
}

void copy(const CommandContext& context) {
    if (!context.store.copySelectedCanvasPixels())
        FocusedText::invoke(QApplication::focusWidget(), "copy()");
}

void mergeLayerDown(const CommandContext& context) {
    if (const model::PaintProject* project = context.store.activeProject())
        context.store.flattenLayerDown(project->selectedLayerID);
}

} // namespace quillabrae::shell::CommandSteps
