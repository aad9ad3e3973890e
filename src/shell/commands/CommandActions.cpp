// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/CommandActions.h"

#include "shell/commands/PluginRows.h"
#include "store/ProjectStore.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace quillabrae::shell {

CommandActions::CommandActions(CommandContext context, QObject* parent)
    : QObject(parent), m_context(context) {
    for (const Command& command : commandTable()) {
        m_entries.push_back({&command, makeAction(command)});
    }
    followStore();
    refresh();
}

QAction* CommandActions::makeAction(const Command& command) {
    auto* action = new QAction(this);
    if (command.isDivider()) {
        action->setSeparator(true);
        return action;
    }
    action->setText(title(command));
    action->setShortcuts(shortcutsOf(command));
    action->setMenuRole(QAction::NoRole);
    action->setStatusTip(help(command));
    connect(action, &QAction::triggered, this, [this, &command] {
        if (command.isEnabled(m_context.store)) command.run(m_context);
    });
    return action;
}

void CommandActions::followStore() {
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(0);
    connect(&m_refreshTimer, &QTimer::timeout, this, &CommandActions::refresh);
    const auto later = qOverload<>(&QTimer::start);
    const store::ProjectStore* store = &m_context.store;
    connect(store, &store::ProjectStore::openProjectsChanged, &m_refreshTimer, later);
    connect(store, &store::ProjectStore::activeProjectChanged, &m_refreshTimer, later);
    connect(store, &store::ProjectStore::historyChanged, &m_refreshTimer, later);
    connect(store, &store::ProjectStore::projectChanged, &m_refreshTimer, later);
}

void CommandActions::refresh() {
    for (const auto& [command, action] : m_entries) {
        if (!command->isDivider()) action->setEnabled(command->isEnabled(m_context.store));
    }
}

void CommandActions::fill(QMenuBar& menuBar) const {
    for (int index = 0; index < commandMenuCount; ++index) {
        const auto menuID = static_cast<CommandMenu>(index);
        QMenu* menu = menuBar.addMenu(title(menuID));
        for (const auto& [command, action] : m_entries) {
            if (command->menu == menuID) menu->addAction(action);
        }
        if (menuID == CommandMenu::plugins)
            new PluginRows(m_context, action(CommandID::noPluginsInstalled), *menu);
    }
}

void CommandActions::addKeysTo(QWidget& window) const {
    for (const auto& [command, action] : m_entries) window.addAction(action);
}

void CommandActions::addKeysTo(QWidget& window, std::initializer_list<CommandID> ids) const {
    for (const CommandID id : ids) window.addAction(&action(id));
}

QAction& CommandActions::action(CommandID id) const {
    const auto idOf = [](const Entry& entry) { return entry.command->id; };
    return *std::ranges::find(m_entries, id, idOf)->action;
}

} // namespace quillabrae::shell
