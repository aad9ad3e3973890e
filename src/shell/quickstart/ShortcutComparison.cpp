// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/ShortcutComparison.h"

#include <algorithm>
#include <array>

namespace quillabrae::shell {
namespace {

using enum CommandID;

constexpr std::array others{
    OtherShortcut{"New", "Ctrl+N", newProject},
    OtherShortcut{"Open", "Ctrl+O", openProject},
    OtherShortcut{"Save", "Ctrl+S", save},
    OtherShortcut{"Save As", "Ctrl+Shift+S", saveAs},
    OtherShortcut{"Close", "Ctrl+W", closeProject},
    OtherShortcut{"Undo", "Ctrl+Z", undo},
    OtherShortcut{"Redo", "Ctrl+Y", redo},
    OtherShortcut{"Cut", "Ctrl+X", cut},
    OtherShortcut{"Copy", "Ctrl+C", copy},
    OtherShortcut{"Paste", "Ctrl+V", paste},
    OtherShortcut{"Select All", "Ctrl+A", selectAll},
    OtherShortcut{"Deselect", "Ctrl+D", dropSelection},
    OtherShortcut{"Zoom In", "Ctrl++", zoomIn},
    OtherShortcut{"Zoom Out", "Ctrl+-", zoomOut},
    OtherShortcut{"Zoom to Window", "Ctrl+B", zoomToFit},
    OtherShortcut{"Resize", "Ctrl+R", resize},
    OtherShortcut{"Canvas Size", "Ctrl+Shift+R", canvasSize},
    OtherShortcut{"Flatten", "Ctrl+Shift+F", std::nullopt},
    OtherShortcut{"Add New Layer", "Ctrl+Shift+N", addLayer},
    OtherShortcut{"Delete Layer", "Ctrl+Shift+Del", deleteLayer},
    OtherShortcut{"Duplicate Layer", "Ctrl+Shift+D", duplicateLayer},
    OtherShortcut{"Merge Layer Down", "Ctrl+M", mergeLayerDown},
    OtherShortcut{"Rotate / Zoom", "Ctrl+Shift+Z", rotateZoom},
    OtherShortcut{"Layer Properties", "F4", layerProperties},
    OtherShortcut{"Invert Colors", "Ctrl+Shift+I", invert},
    OtherShortcut{"Posterize", "Ctrl+Shift+P", std::nullopt},
    OtherShortcut{"Repeat Effect", "Ctrl+F", repeatLastAction},
};

const Command* commandWithKeys(const QKeySequence& keys) {
    const auto table = commandTable();
    const auto found = std::ranges::find_if(table, [&keys](const Command& command) {
        return !command.isDivider() && shortcutsOf(command).contains(keys);
    });
    return found == table.end() ? nullptr : &*found;
}

/// Where the command is, if no keys lead to it, and what else the other's keys lead to.
QString noteOn(const ComparedShortcut& shortcut, const Command* command) {
    QStringList words;
    if (command != nullptr && shortcut.here.isEmpty())
        words << QStringLiteral("in the %1 menu").arg(QString::fromLatin1(title(command->menu)));
    const Command* taken = commandWithKeys(shortcut.there);
    if (taken != nullptr && taken != command)
        words << QStringLiteral("%1 is %2")
                     .arg(shortcut.there.toString(QKeySequence::NativeText), plainTitle(*taken));
    return words.join(QStringLiteral("; "));
}

ComparedShortcut compare(const OtherShortcut& other) {
    const Command* command = other.command ? &shell::command(*other.command) : nullptr;
    ComparedShortcut compared;
    compared.action = QString::fromLatin1(other.action);
    compared.there = QKeySequence(QString::fromLatin1(other.keys), QKeySequence::PortableText);
    if (command != nullptr) {
        const auto keys = shortcutsOf(*command);
        if (keys.contains(compared.there))
            compared.here = compared.there;
        else if (!keys.isEmpty())
            compared.here = keys.first();
    }
    if (!compared.isSame()) compared.note = noteOn(compared, command);
    return compared;
}

} // namespace

std::span<const OtherShortcut> paintNetShortcuts() {
    return others;
}

std::vector<ComparedShortcut> comparedShortcuts() {
    std::vector<ComparedShortcut> compared;
    std::ranges::transform(others, std::back_inserter(compared), compare);
    return compared;
}

} // namespace quillabrae::shell
