// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"

#include <QKeySequence>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace quillabrae::shell {

/// One shortcut of Paint.NET and what it does there.
struct OtherShortcut {
    /// What it is called there.
    const char* action = nullptr;
    /// In portable text.
    const char* keys = nullptr;
    /// The command here that does the same, if there is one.
    std::optional<CommandID> command;
};

/// The shortcuts that people who know Paint.NET have in their fingers, menu by menu.
std::span<const OtherShortcut> paintNetShortcuts();

/// What becomes of one of them here.
struct ComparedShortcut {
    QString action;
    /// Empty where there is no such command, or none with keys.
    QKeySequence here;
    QKeySequence there;
    /// What `there` does here, or where the command is found: a few words, at times none.
    QString note;

    bool isSame() const { return here == there; }
};

/// Each of the shortcuts beside what the command table has for it.
std::vector<ComparedShortcut> comparedShortcuts();

} // namespace quillabrae::shell
