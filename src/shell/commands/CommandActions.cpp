// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/CommandActions.h"

#include "shell/commands/PluginRows.h"
#include "store/ProjectStore.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

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
    if (command.title == nullptr) {
        action->setSeparator(true);
        return action;
    }
    action->setText(QString::fromLatin1(command.title));
    action->setShortcuts(shortcutsOf(command));
    action->setMenuRole(QAction::NoRole);
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
        if (command->title != nullptr) action->setEnabled(command->isEnabled(m_context.store));
    }
}

void CommandActions::fill(QMenuBar& menuBar) const {
    for (int index = 0; index < commandMenuCount; ++index) {
        const auto menuID = static_cast<CommandMenu>(index);
        QMenu* menu = menuBar.addMenu(QString::fromLatin1(title(menuID)));
        for (const auto& [command, action] : m_entries) {
            if (command->menu == menuID) menu->addAction(action);
        }
        if (menuID == CommandMenu::plugins)
            new PluginRows(m_context, *action(QStringLiteral("No Plugins Installed")), *menu);
    }
}

void CommandActions::addKeysTo(QWidget& window) const {
    for (const auto& [command, action] : m_entries) window.addAction(action);
}

void CommandActions::addKeysTo(QWidget& window, const QStringList& titles) const {
    for (const QString& title : titles) window.addAction(action(title));
}

QAction* CommandActions::action(const QString& title) const {
    for (const auto& [command, action] : m_entries) {
        if (command->title != nullptr && action->text() == title) return action;
    }
    return nullptr;
}

} // namespace quillabrae::shell
