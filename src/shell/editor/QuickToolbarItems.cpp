// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/WindowCoordinator.h"
#include "shell/dialogs/ResizeFields.h"
#include "shell/editor/QuickToolbar.h"
#include "store/ProjectStore.h"

#include <array>

namespace quillabrae::shell {
namespace {

using namespace CommandPredicates;
using namespace CommandSteps;
using Context = CommandContext;
using Store = store::ProjectStore;

constexpr ToolbarItem divider{nullptr, nullptr, nullptr, nullptr, nullptr};

const char* gridSymbol(const Store& store) {
    return store.settings().showsPixelGrid ? "grid.circle.fill" : "grid";
}

// clang-format off
constexpr std::array items{
    ToolbarItem{"New Project", "Creates a blank project in the current window.",
                [](const Store&) { return "doc.badge.plus"; }, always, [](const Context& c) { c.windows.createNewProject(); }},
    ToolbarItem{"Open Project", "Opens a saved .quillabrae project file.",
                [](const Store&) { return "folder.badge.plus"; }, always, [](const Context& c) { c.windows.openProjectFromPanel(); }},
    ToolbarItem{"Save", "Saves to the current file, or asks for a location the first time.",
                [](const Store&) { return "square.and.arrow.down"; }, hasActiveProject, [](const Context& c) { c.store.saveActiveProject(); }},
    ToolbarItem{"Settings", "Opens Quillabrae settings.",
                [](const Store&) { return "gearshape"; }, always, [](const Context& c) { c.windows.showSettings(); }},
    divider,
    ToolbarItem{"Cut", "Cuts selected canvas pixels, or cuts text when editing a field.",
                [](const Store&) { return "scissors"; }, always, cut},
    ToolbarItem{"Copy", "Copies selected canvas pixels, or copies text when editing a field.",
                [](const Store&) { return "doc.on.doc"; }, always, copy},
    ToolbarItem{"Paste", "Pastes an image from the clipboard as pixels.",
                [](const Store&) { return "clipboard"; }, always, [](const Context& c) { c.windows.pasteImageFromClipboard(); }},
    divider,
    ToolbarItem{"Resize", "Stretches the active image to a new pixel size.",
                [](const Store&) { return "arrow.up.left.and.arrow.down.right"; }, hasActiveProject, [](const Context& c) { c.windows.showResizeDialog(ResizeDialogMode::image); }},
    ToolbarItem{"Align Object", "Aligns non-transparent pixels within the selection or full canvas.",
                [](const Store&) { return "square.grid.3x3"; }, hasActiveProject, [](const Context& c) { c.windows.showAlignObjectDialog(); }},
    ToolbarItem{"Color Removal", "Smoothly removes a chosen color from the active layer and previews the result.",
                [](const Store&) { return "eraser.line.dashed"; }, hasActiveProject, [](const Context& c) { c.windows.showColorRemovalDialog(); }},
    ToolbarItem{"Generative Fill", "Uses your OpenAI API key to replace the selected pixels from a prompt.",
                [](const Store&) { return "sparkles"; }, [](const Store& store) { return store.canGenerativeFill(); }, [](const Context& c) { c.windows.showGenerativeFillDialog(); }},
    ToolbarItem{"Trim Whitespace", "Removes transparent whitespace around the image and shrinks the canvas to fit.",
                [](const Store&) { return "crop"; }, hasActiveProject, [](const Context& c) { c.store.trimTransparentWhitespace(); }},
    divider,
    ToolbarItem{"Undo", "Steps back to the previous history item.",
                [](const Store&) { return "arrow.uturn.backward"; }, canUndo, undo},
    ToolbarItem{"Redo", "Restores the next history item.",
                [](const Store&) { return "arrow.uturn.forward"; }, canRedo, redo},
    divider,
    ToolbarItem{"Toggle Pixel Grid", "Shows pixel boundaries when zoomed in close enough.",
                gridSymbol, hasActiveProject, [](const Context& c) { c.store.togglePixelGrid(); }},
};
// clang-format on

} // namespace

std::span<const ToolbarItem> quickToolbarItems() {
    return items;
}

} // namespace quillabrae::shell
