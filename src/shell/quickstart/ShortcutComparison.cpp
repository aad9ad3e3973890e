// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/ShortcutComparison.h"

#include "shell/commands/CommandTable.h"

#include <algorithm>
#include <array>

namespace quillabrae::shell {
namespace {

constexpr std::array others{
    OtherShortcut{"New", "Ctrl+N", "New Project"},
    OtherShortcut{"Open", "Ctrl+O", "Open Project..."},
    OtherShortcut{"Save", "Ctrl+S", "Save"},
    OtherShortcut{"Save As", "Ctrl+Shift+S", "Save As..."},
    OtherShortcut{"Close", "Ctrl+W", "Close Project"},
    OtherShortcut{"Undo", "Ctrl+Z", "Undo"},
    OtherShortcut{"Redo", "Ctrl+Y", "Redo"},
    OtherShortcut{"Cut", "Ctrl+X", "Cut"},
    OtherShortcut{"Copy", "Ctrl+C", "Copy"},
    OtherShortcut{"Paste", "Ctrl+V", "Paste"},
    OtherShortcut{"Select All", "Ctrl+A", "Select All"},
    OtherShortcut{"Deselect", "Ctrl+D", "Drop Selection"},
    OtherShortcut{"Zoom In", "Ctrl++", "Zoom In"},
    OtherShortcut{"Zoom Out", "Ctrl+-", "Zoom Out"},
    OtherShortcut{"Zoom to Window", "Ctrl+B", "Zoom to Fit"},
    OtherShortcut{"Resize", "Ctrl+R", "Resize..."},
    OtherShortcut{"Canvas Size", "Ctrl+Shift+R", "Canvas Size..."},
    OtherShortcut{"Flatten", "Ctrl+Shift+F", nullptr},
    OtherShortcut{"Add New Layer", "Ctrl+Shift+N", "Add New Layer"},
    OtherShortcut{"Delete Layer", "Ctrl+Shift+Del", "Delete Layer"},
    OtherShortcut{"Duplicate Layer", "Ctrl+Shift+D", "Duplicate Layer"},
    OtherShortcut{"Merge Layer Down", "Ctrl+M", "Merge Layer Down"},
    OtherShortcut{"Rotate / Zoom", "Ctrl+Shift+Z", "Rotate / Zoom..."},
    OtherShortcut{"Layer Properties", "F4", "Layer Properties..."},
    OtherShortcut{"Invert Colors", "Ctrl+Shift+I", "Invert"},
    OtherShortcut{"Posterize", "Ctrl+Shift+P", nullptr},
    OtherShortcut{"Repeat Effect", "Ctrl+F", "Repeat Last Action"},
};

const Command* commandTitled(const char* title) {
    const auto table = commandTable();
    const QLatin1StringView sought(title);
    const auto found = std::ranges::find_if(table, [sought](const Command& command) {
        return command.title != nullptr && sought == QLatin1StringView(command.title);
    });
    return found == table.end() ? nullptr : &*found;
}

const Command* commandWithKeys(const QKeySequence& keys) {
    const auto table = commandTable();
    const auto found = std::ranges::find_if(table, [&keys](const Command& command) {
        return command.title != nullptr && shortcutsOf(command).contains(keys);
    });
    return found == table.end() ? nullptr : &*found;
}

QString plainTitle(const Command& command) {
    QString title = QString::fromLatin1(command.title);
    return title.remove(QStringLiteral("..."));
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
    const Command* command = other.command != nullptr ? commandTitled(other.command) : nullptr;
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
