// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"

#include <QObject>
#include <QTimer>

#include <initializer_list>
#include <vector>

class QAction;
class QMenuBar;
class QWidget;

namespace quillabrae::shell {

/// The command table as actions, kept enabled as the store stands. Serves every window, so that a
/// command's keys work in each of them.
class CommandActions final : public QObject {
    Q_OBJECT

public:
    explicit CommandActions(CommandContext context, QObject* parent = nullptr);

    /// Adds one menu for each menu of the table.
    void fill(QMenuBar& menuBar) const;
    /// Makes the commands' keys work in a window that shows no menus.
    void addKeysTo(QWidget& window) const;
    /// The same for these commands alone.
    void addKeysTo(QWidget& window, std::initializer_list<CommandID> ids) const;
    /// The action of a command. `id` is not `divider`.
    QAction& action(CommandID id) const;

private:
    struct Entry {
        const Command* command;
        QAction* action;
    };

    QAction* makeAction(const Command& command);
    void followStore();
    void refresh();

    CommandContext m_context;
    std::vector<Entry> m_entries;
    QTimer m_refreshTimer;
};

} // namespace quillabrae::shell
