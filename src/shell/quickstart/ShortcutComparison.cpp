// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/ShortcutComparison.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace quillabrae::shell {
namespace {

using enum CommandID;

constexpr std::array others{
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "New"), "Ctrl+N", newProject},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Open"), "Ctrl+O", openProject},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Save"), "Ctrl+S", save},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Save As"), "Ctrl+Shift+S", saveAs},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Close"), "Ctrl+W", closeProject},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Undo"), "Ctrl+Z", undo},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Redo"), "Ctrl+Y", redo},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Cut"), "Ctrl+X", cut},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Copy"), "Ctrl+C", copy},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Paste"), "Ctrl+V", paste},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Select All"), "Ctrl+A", selectAll},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Deselect"), "Ctrl+D", dropSelection},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Zoom In"), "Ctrl++", zoomIn},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Zoom Out"), "Ctrl+-", zoomOut},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Zoom to Window"), "Ctrl+B", zoomToFit},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Resize"), "Ctrl+R", resize},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Canvas Size"), "Ctrl+Shift+R", canvasSize},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Flatten"), "Ctrl+Shift+F", std::nullopt},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Add New Layer"), "Ctrl+Shift+N", addLayer},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Delete Layer"), "Ctrl+Shift+Del", deleteLayer},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Duplicate Layer"), "Ctrl+Shift+D",
                  duplicateLayer},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Merge Layer Down"), "Ctrl+M", mergeLayerDown},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Rotate / Zoom"), "Ctrl+Shift+Z", rotateZoom},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Layer Properties"), "F4", layerProperties},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Invert Colors"), "Ctrl+Shift+I", invert},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Posterize"), "Ctrl+Shift+P", std::nullopt},
    OtherShortcut{QT_TRANSLATE_NOOP("Shortcuts", "Repeat Effect"), "Ctrl+F", repeatLastAction},
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
        words
            << QCoreApplication::translate("Shortcuts", "in the %1 menu").arg(title(command->menu));
    const Command* taken = commandWithKeys(shortcut.there);
    if (taken != nullptr && taken != command)
        words << QCoreApplication::translate("Shortcuts", "%1 is %2")
                     .arg(shortcut.there.toString(QKeySequence::NativeText), plainTitle(*taken));
    return words.join(QStringLiteral("; "));
}

ComparedShortcut compare(const OtherShortcut& other) {
    const Command* command = other.command ? &shell::command(*other.command) : nullptr;
    ComparedShortcut compared;
    compared.action = QCoreApplication::translate("Shortcuts", other.action);
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
