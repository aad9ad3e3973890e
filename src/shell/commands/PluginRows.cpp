// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/PluginRows.h"

#include "effects/PluginLibraryService.h"
#include "shell/app/WindowCoordinator.h"
#include "store/ProjectStore.h"

#include <QAction>
#include <QMenu>

namespace quillabrae::shell {

PluginRows::PluginRows(const CommandContext& context, QAction& noneRow, QMenu& menu)
    : QObject(&menu), m_context(context), m_noneRow(noneRow), m_menu(menu) {
    connect(&context.windows.plugins(), &effects::PluginLibraryService::installedPluginIDsChanged,
            this, &PluginRows::rebuild);
    connect(&context.store, &store::ProjectStore::openProjectsChanged, this, &PluginRows::refresh);
    connect(&context.store, &store::ProjectStore::activeProjectChanged, this, &PluginRows::refresh);
    rebuild();
}

void PluginRows::rebuild() {
    qDeleteAll(m_rows);
    m_rows.clear();
    for (const effects::QuillabraePlugin& plugin : m_context.windows.plugins().installedPlugins()) {
        auto* row = new QAction(title(plugin), &m_menu);
        row->setMenuRole(QAction::NoRole);
        connect(row, &QAction::triggered, this,
                [this, id = plugin.id] { m_context.windows.runPlugin(id); });
        m_menu.addAction(row);
        m_rows.append(row);
    }
    m_noneRow.setVisible(m_rows.isEmpty());
    refresh();
}

void PluginRows::refresh() {
    for (QAction* row : m_rows) row->setEnabled(m_context.store.hasActiveProject());
}

} // namespace quillabrae::shell
