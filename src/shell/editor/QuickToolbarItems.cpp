// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/QuickToolbar.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>

#include <array>

namespace quillabrae::shell {
namespace {

using enum CommandID;

bool showsPixelGrid(const store::ProjectStore& store) {
    return store.settings().showsPixelGrid;
}

constexpr std::array items{
    ToolbarItem{newProject},
    ToolbarItem{openProject},
    ToolbarItem{save},
    ToolbarItem{preferences, QT_TRANSLATE_NOOP("Command", "Settings")},
    ToolbarItem{divider},
    ToolbarItem{cut},
    ToolbarItem{copy},
    ToolbarItem{paste},
    ToolbarItem{divider},
    ToolbarItem{resize},
    ToolbarItem{alignObject},
    ToolbarItem{colorRemoval},
    ToolbarItem{generativeFill},
    ToolbarItem{trimWhitespace},
    ToolbarItem{divider},
    ToolbarItem{undo},
    ToolbarItem{redo},
    ToolbarItem{divider},
    ToolbarItem{togglePixelGrid, nullptr, showsPixelGrid, "grid.circle.fill"},
};

} // namespace

std::span<const ToolbarItem> quickToolbarItems() {
    return items;
}

QString ToolbarItem::title() const {
    return ownTitle != nullptr ? QCoreApplication::translate("Command", ownTitle)
                               : plainTitle(command(id));
}

const char* ToolbarItem::symbol(const store::ProjectStore& store) const {
    return isOn != nullptr && isOn(store) ? symbolWhenOn : command(id).symbol;
}

} // namespace quillabrae::shell
