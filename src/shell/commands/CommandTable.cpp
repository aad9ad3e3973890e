// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/CommandTable.h"

#include "shell/app/WindowCoordinator.h"
#include "shell/commands/FocusedText.h"
#include "shell/dialogs/ResizeFields.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QCoreApplication>

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
    Command{file, ID::newProject, QT_TRANSLATE_NOOP("Command", "New Project"), "Ctrl+N", always, [](const Context& c) { c.windows.createNewProject(); },
            "doc.badge.plus", QT_TRANSLATE_NOOP("Command", "Creates a blank project in the current window.")},
    Command{file, ID::openProject, QT_TRANSLATE_NOOP("Command", "Open Project..."), "Ctrl+O", always, [](const Context& c) { c.windows.openProjectFromPanel(); },
            "folder.badge.plus", QT_TRANSLATE_NOOP("Command", "Opens a saved .quillabrae project file.")},
    divider(file),
    Command{file, ID::save, QT_TRANSLATE_NOOP("Command", "Save"), "Ctrl+S", hasActiveProject, [](const Context& c) { c.store.saveActiveProject(); },
            "square.and.arrow.down", QT_TRANSLATE_NOOP("Command", "Saves to the current file, or asks for a location the first time.")},
    Command{file, ID::saveAs, QT_TRANSLATE_NOOP("Command", "Save As..."), "Ctrl+Shift+S", hasActiveProject, [](const Context& c) { c.store.saveActiveProjectAs(); }},
    divider(file),
    Command{file, ID::closeProject, QT_TRANSLATE_NOOP("Command", "Close Project"), "Ctrl+W", hasActiveProject, [](const Context& c) { c.windows.closeActiveProject(); }},
    divider(file),
    Command{file, ID::quit, QT_TRANSLATE_NOOP("Command", "Quit"), "Ctrl+Q", always, [](const Context& c) { c.windows.requestQuit(); }},

    Command{edit, ID::undo, QT_TRANSLATE_NOOP("Command", "Undo"), "Ctrl+Z", canUndo, undo,
            "arrow.uturn.backward", QT_TRANSLATE_NOOP("Command", "Steps back to the previous history item.")},
    Command{edit, ID::redo, QT_TRANSLATE_NOOP("Command", "Redo"), "Ctrl+Shift+Z Ctrl+Y", canRedo, redo,
            "arrow.uturn.forward", QT_TRANSLATE_NOOP("Command", "Restores the next history item.")},
    divider(edit),
    Command{edit, ID::cut, QT_TRANSLATE_NOOP("Command", "Cut"), "Ctrl+X", always, cut,
            "scissors", QT_TRANSLATE_NOOP("Command", "Cuts selected canvas pixels, or cuts text when editing a field.")},
    Command{edit, ID::copy, QT_TRANSLATE_NOOP("Command", "Copy"), "Ctrl+C", always, copy,
            "doc.on.doc", QT_TRANSLATE_NOOP("Command", "Copies selected canvas pixels, or copies text when editing a field.")},
    Command{edit, ID::selectAll, QT_TRANSLATE_NOOP("Command", "Select All"), "Ctrl+A", hasActiveProject, [](const Context& c) { c.store.selectAllCanvas(); }},
    Command{edit, ID::dropSelection, QT_TRANSLATE_NOOP("Command", "Drop Selection"), "Esc", canDropSelection, [](const Context& c) { c.store.dropSelection(); }},
    Command{edit, ID::paste, QT_TRANSLATE_NOOP("Command", "Paste"), "Ctrl+V", always, [](const Context& c) { c.windows.pasteImageFromClipboard(); },
            "clipboard", QT_TRANSLATE_NOOP("Command", "Pastes an image from the clipboard as pixels.")},
    divider(edit),
    Command{edit, ID::preferences, QT_TRANSLATE_NOOP("Command", "Preferences"), "Ctrl+,", always, [](const Context& c) { c.windows.showSettings(); },
            "gearshape", QT_TRANSLATE_NOOP("Command", "Opens Quillabrae settings.")},

    // Twice, so that each key is seen and neither needs Shift.
    Command{zoom, ID::zoomIn, QT_TRANSLATE_NOOP("Command", "Zoom In"), "Ctrl++", always, [](const Context& c) { c.store.zoomIn(); }},
    Command{zoom, ID::zoomInWithEquals, QT_TRANSLATE_NOOP("Command", "Zoom In"), "Ctrl+=", always, [](const Context& c) { c.store.zoomIn(); }},
    Command{zoom, ID::zoomOut, QT_TRANSLATE_NOOP("Command", "Zoom Out"), "Ctrl+-", always, [](const Context& c) { c.store.zoomOut(); }},
    Command{zoom, ID::zoomToFit, QT_TRANSLATE_NOOP("Command", "Zoom to Fit"), "Ctrl+B", hasActiveProject, zoomToFit},

    Command{image, ID::resize, QT_TRANSLATE_NOOP("Command", "Resize..."), "Ctrl+R", hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::image); },
            "arrow.up.left.and.arrow.down.right", QT_TRANSLATE_NOOP("Command", "Stretches the active image to a new pixel size.")},
    Command{image, ID::canvasSize, QT_TRANSLATE_NOOP("Command", "Canvas Size..."), "Ctrl+Shift+R", hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::canvas); }},
    Command{image, ID::invert, QT_TRANSLATE_NOOP("Command", "Invert"), "Ctrl+Shift+I", hasActiveProject, [](const Context& c) { c.store.invertActiveImage(); }},

    Command{layers, ID::addLayer, QT_TRANSLATE_NOOP("Command", "Add New Layer"), "Ctrl+Shift+N", hasActiveProject, [](const Context& c) { c.store.addLayer(); }},
    Command{layers, ID::deleteLayer, QT_TRANSLATE_NOOP("Command", "Delete Layer"), "Ctrl+Shift+Del Ctrl+Shift+Backspace", canDeleteLayer, [](const Context& c) { c.store.deleteSelectedLayer(); }},
    Command{layers, ID::duplicateLayer, QT_TRANSLATE_NOOP("Command", "Duplicate Layer"), "Ctrl+Shift+D", hasActiveProject, [](const Context& c) { c.store.duplicateSelectedLayer(); }},
    Command{layers, ID::mergeLayerDown, QT_TRANSLATE_NOOP("Command", "Merge Layer Down"), "Ctrl+M", canMergeLayerDown, mergeLayerDown},
    Command{layers, ID::importLayer, QT_TRANSLATE_NOOP("Command", "Import From File..."), "", hasActiveProject, [](const Context& c) { c.store.importLayerFromFile(); }},
    divider(layers),
    Command{layers, ID::flipHorizontal, QT_TRANSLATE_NOOP("Command", "Flip Horizontal"), "", hasActiveProject, [](const Context& c) { c.store.flipSelectedLayer(store::FlipDirection::horizontal); }},
    Command{layers, ID::flipVertical, QT_TRANSLATE_NOOP("Command", "Flip Vertical"), "", hasActiveProject, [](const Context& c) { c.store.flipSelectedLayer(store::FlipDirection::vertical); }},
    Command{layers, ID::rotateZoom, QT_TRANSLATE_NOOP("Command", "Rotate / Zoom..."), "Ctrl+Alt+Z", hasActiveProject, [](const Context& c) { c.windows.showRotateZoomDialog(); }},
    divider(layers),
    Command{layers, ID::layerProperties, QT_TRANSLATE_NOOP("Command", "Layer Properties..."), "", hasActiveProject, [](const Context& c) { c.windows.showLayerPropertiesDialog(); }},

    Command{object, ID::alignObject, QT_TRANSLATE_NOOP("Command", "Align Object..."), "Ctrl+Shift+F", hasActiveProject, [](const Context& c) { c.windows.showAlignObjectDialog(); },
            "square.grid.3x3", QT_TRANSLATE_NOOP("Command", "Aligns non-transparent pixels within the selection or full canvas.")},
    Command{object, ID::repeatLastAction, QT_TRANSLATE_NOOP("Command", "Repeat Last Action"), "Ctrl+F", canRepeatLastAction, [](const Context& c) { c.store.repeatLastAction(); }},

    Command{plugins, ID::pluginLibrary, QT_TRANSLATE_NOOP("Command", "Plugin Library..."), "Ctrl+Shift+P", always, [](const Context& c) { c.windows.showPluginLibrary(); }},
    divider(plugins),
    Command{plugins, ID::noPluginsInstalled, QT_TRANSLATE_NOOP("Command", "No Plugins Installed"), "", never, [](const Context&) {}},

    Command{help, ID::paintNetQuickStart, QT_TRANSLATE_NOOP("Command", "Paint.NET Quick Start"), "", always, [](const Context& c) { c.windows.showPaintNetQuickStart(); }},

    Command{none, ID::colorRemoval, QT_TRANSLATE_NOOP("Command", "Color Removal"), "", hasActiveProject, [](const Context& c) { c.windows.showColorRemovalDialog(); },
            "eraser.line.dashed", QT_TRANSLATE_NOOP("Command", "Smoothly removes a chosen color from the active layer and previews the result.")},
    Command{none, ID::generativeFill, QT_TRANSLATE_NOOP("Command", "Generative Fill"), "", canGenerativeFill, [](const Context& c) { c.windows.showGenerativeFillDialog(); },
            "sparkles", QT_TRANSLATE_NOOP("Command", "Uses your OpenAI API key to replace the selected pixels from a prompt.")},
    Command{none, ID::trimWhitespace, QT_TRANSLATE_NOOP("Command", "Trim Whitespace"), "", hasActiveProject, [](const Context& c) { c.store.trimTransparentWhitespace(); },
            "crop", QT_TRANSLATE_NOOP("Command", "Removes transparent whitespace around the image and shrinks the canvas to fit.")},
    Command{none, ID::togglePixelGrid, QT_TRANSLATE_NOOP("Command", "Toggle Pixel Grid"), "", hasActiveProject, [](const Context& c) { c.store.togglePixelGrid(); },
            "grid", QT_TRANSLATE_NOOP("Command", "Shows pixel boundaries when zoomed in close enough.")},
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
    QT_TRANSLATE_NOOP("Menu", "File"),    QT_TRANSLATE_NOOP("Menu", "Edit"),
    QT_TRANSLATE_NOOP("Menu", "Zoom"),    QT_TRANSLATE_NOOP("Menu", "Image"),
    QT_TRANSLATE_NOOP("Menu", "Layers"),  QT_TRANSLATE_NOOP("Menu", "Object"),
    QT_TRANSLATE_NOOP("Menu", "Plugins"), QT_TRANSLATE_NOOP("Menu", "Help")};

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

QString title(const Command& command) {
    return QCoreApplication::translate("Command", command.title);
}

QString help(const Command& command) {
    return QCoreApplication::translate("Command", command.help);
}

QString plainTitle(const Command& command) {
    return title(command).remove(QStringLiteral("...")).remove(u'…');
}

QString title(CommandMenu menu) {
    return QCoreApplication::translate("Menu", menuTitles.at(static_cast<std::size_t>(menu)));
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
