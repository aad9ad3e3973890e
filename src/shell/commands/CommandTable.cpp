// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/CommandTable.h"

#include "shell/app/WindowCoordinator.h"
#include "shell/commands/FocusedText.h"
#include "shell/dialogs/ResizeFields.h"
#include "store/ProjectStore.h"

#include <QApplication>

#include <algorithm>
#include <array>

namespace quillabrae::shell {
namespace {

using namespace CommandPredicates;
using namespace CommandSteps;
using enum CommandMenu;
using Context = CommandContext;
using ID = CommandID;

void zoomToFit(const Context& context) {
    context.store.performZoomToFitCanvas(store::StatusUpdate::shown);
}

constexpr Command divider(CommandMenu menu) {
    return {.menu = menu};
}

// clang-format off
constexpr std::array commands{
    Command{file, ID::newProject, "New Project", "Ctrl+N", always, [](const Context& c) { c.windows.createNewProject(); },
            "doc.badge.plus", "Creates a blank project in the current window."},
    Command{file, ID::openProject, "Open Project...", "Ctrl+O", always, [](const Context& c) { c.windows.openProjectFromPanel(); },
            "folder.badge.plus", "Opens a saved .quillabrae project file."},
    divider(file),
    Command{file, ID::save, "Save", "Ctrl+S", hasActiveProject, [](const Context& c) { c.store.saveActiveProject(); },
            "square.and.arrow.down", "Saves to the current file, or asks for a location the first time."},
    Command{file, ID::saveAs, "Save As...", "Ctrl+Shift+S", hasActiveProject, [](const Context& c) { c.store.saveActiveProjectAs(); }},
    divider(file),
    Command{file, ID::closeProject, "Close Project", "Ctrl+W", hasActiveProject, [](const Context& c) { c.windows.closeActiveProject(); }},
    divider(file),
    Command{file, ID::quit, "Quit", "Ctrl+Q", always, [](const Context& c) { c.windows.requestQuit(); }},

    Command{edit, ID::undo, "Undo", "Ctrl+Z", canUndo, undo,
            "arrow.uturn.backward", "Steps back to the previous history item."},
    Command{edit, ID::redo, "Redo", "Ctrl+Shift+Z Ctrl+Y", canRedo, redo,
            "arrow.uturn.forward", "Restores the next history item."},
    divider(edit),
    Command{edit, ID::cut, "Cut", "Ctrl+X", always, cut,
            "scissors", "Cuts selected canvas pixels, or cuts text when editing a field."},
    Command{edit, ID::copy, "Copy", "Ctrl+C", always, copy,
            "doc.on.doc", "Copies selected canvas pixels, or copies text when editing a field."},
    Command{edit, ID::selectAll, "Select All", "Ctrl+A", hasActiveProject, [](const Context& c) { c.store.selectAllCanvas(); }},
    Command{edit, ID::dropSelection, "Drop Selection", "Esc", canDropSelection, [](const Context& c) { c.store.dropSelection(); }},
    Command{edit, ID::paste, "Paste", "Ctrl+V", always, [](const Context& c) { c.windows.pasteImageFromClipboard(); },
            "clipboard", "Pastes an image from the clipboard as pixels."},
    divider(edit),
    Command{edit, ID::preferences, "Preferences", "Ctrl+,", always, [](const Context& c) { c.windows.showSettings(); },
            "gearshape", "Opens Quillabrae settings."},

    // Twice, so that each key is seen and neither needs Shift.
    Command{zoom, ID::zoomIn, "Zoom In", "Ctrl++", always, [](const Context& c) { c.store.zoomIn(); }},
    Command{zoom, ID::zoomInWithEquals, "Zoom In", "Ctrl+=", always, [](const Context& c) { c.store.zoomIn(); }},
    Command{zoom, ID::zoomOut, "Zoom Out", "Ctrl+-", always, [](const Context& c) { c.store.zoomOut(); }},
    Command{zoom, ID::zoomToFit, "Zoom to Fit", "Ctrl+B", hasActiveProject, zoomToFit},

    Command{image, ID::resize, "Resize...", "Ctrl+R", hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::image); },
            "arrow.up.left.and.arrow.down.right", "Stretches the active image to a new pixel size."},
    Command{image, ID::canvasSize, "Canvas Size...", "Ctrl+Shift+R", hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::canvas); }},
    Command{image, ID::invert, "Invert", "Ctrl+Shift+I", hasActiveProject, [](const Context& c) { c.store.invertActiveImage(); }},

    Command{layers, ID::addLayer, "Add New Layer", "Ctrl+Shift+N", hasActiveProject, [](const Context& c) { c.store.addLayer(); }},
    Command{layers, ID::deleteLayer, "Delete Layer", "Ctrl+Shift+Del Ctrl+Shift+Backspace", canDeleteLayer, [](const Context& c) { c.store.deleteSelectedLayer(); }},
    Command{layers, ID::duplicateLayer, "Duplicate Layer", "Ctrl+Shift+D", hasActiveProject, [](const Context& c) { c.store.duplicateSelectedLayer(); }},
    Command{layers, ID::mergeLayerDown, "Merge Layer Down", "Ctrl+M", canMergeLayerDown, mergeLayerDown},
    Command{layers, ID::importLayer, "Import From File...", "", hasActiveProject, [](const Context& c) { c.store.importLayerFromFile(); }},
    divider(layers),
    Command{layers, ID::flipHorizontal, "Flip Horizontal", "", hasActiveProject, [](const Context& c) { c.store.flipSelectedLayer(store::FlipDirection::horizontal); }},
    Command{layers, ID::flipVertical, "Flip Vertical", "", hasActiveProject, [](const Context& c) { c.store.flipSelectedLayer(store::FlipDirection::vertical); }},
    Command{layers, ID::rotateZoom, "Rotate / Zoom...", "Ctrl+Alt+Z", hasActiveProject, [](const Context& c) { c.windows.showRotateZoomDialog(); }},
    divider(layers),
    Command{layers, ID::layerProperties, "Layer Properties...", "", hasActiveProject, [](const Context& c) { c.windows.showLayerPropertiesDialog(); }},

    Command{object, ID::alignObject, "Align Object...", "Ctrl+Shift+F", hasActiveProject, [](const Context& c) { c.windows.showAlignObjectDialog(); },
            "square.grid.3x3", "Aligns non-transparent pixels within the selection or full canvas."},
    Command{object, ID::repeatLastAction, "Repeat Last Action", "Ctrl+F", canRepeatLastAction, [](const Context& c) { c.store.repeatLastAction(); }},

    Command{plugins, ID::pluginLibrary, "Plugin Library...", "Ctrl+Shift+P", always, [](const Context& c) { c.windows.showPluginLibrary(); }},
    divider(plugins),
    Command{plugins, ID::noPluginsInstalled, "No Plugins Installed", "", never, [](const Context&) {}},

    Command{help, ID::paintNetQuickStart, "Paint.NET Quick Start", "", always, [](const Context& c) { c.windows.showPaintNetQuickStart(); }},

    Command{none, ID::colorRemoval, "Color Removal", "", hasActiveProject, [](const Context& c) { c.windows.showColorRemovalDialog(); },
            "eraser.line.dashed", "Smoothly removes a chosen color from the active layer and previews the result."},
    Command{none, ID::generativeFill, "Generative Fill", "", canGenerativeFill, [](const Context& c) { c.windows.showGenerativeFillDialog(); },
            "sparkles", "Uses your OpenAI API key to replace the selected pixels from a prompt."},
    Command{none, ID::trimWhitespace, "Trim Whitespace", "", hasActiveProject, [](const Context& c) { c.store.trimTransparentWhitespace(); },
            "crop", "Removes transparent whitespace around the image and shrinks the canvas to fit."},
    Command{none, ID::togglePixelGrid, "Toggle Pixel Grid", "", hasActiveProject, [](const Context& c) { c.store.togglePixelGrid(); },
            "grid", "Shows pixel boundaries when zoomed in close enough."},
};
// clang-format on

constexpr bool hasEachCommandOnceInOrder() {
    int next = 0;
    for (const Command& row : commands) {
        if (!row.isDivider() && static_cast<int>(row.id) != next++) return false;
    }
    return next == commandCount;
}
static_assert(hasEachCommandOnceInOrder());

constexpr std::array<const char*, commandMenuCount> menuTitles{
    "File", "Edit", "Zoom", "Image", "Layers", "Object", "Plugins", "Help"};

} // namespace

std::span<const Command> commandTable() {
    return commands;
}

const Command& command(CommandID id) {
    return *std::ranges::find(commands, id, &Command::id);
}

QList<QKeySequence> shortcutsOf(const Command& command) {
    QList<QKeySequence> keys;
    const QString texts = QString::fromLatin1(command.shortcuts);
    for (const QString& text : texts.split(QChar(u' '), Qt::SkipEmptyParts))
        keys.append(QKeySequence(text, QKeySequence::PortableText));
    return keys;
}

QString plainTitle(const Command& command) {
    return QString::fromLatin1(command.title).remove(QStringLiteral("..."));
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
