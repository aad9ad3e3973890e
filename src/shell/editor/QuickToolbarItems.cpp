// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/WindowCoordinator.h"
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
