// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"

#include <QList>
#include <QObject>

class QAction;
class QMenu;

namespace quillabrae::shell {

/// The rows of a menu that run the installed plugins, or the row that says that there are none.
/// They follow what is installed. Lives as long as the menu.
class PluginRows final : public QObject {
    Q_OBJECT

public:
    /// `noneRow` is a row of the menu, the one for when nothing is installed. `context` outlives
    /// the menu.
    PluginRows(const CommandContext& context, QAction& noneRow, QMenu& menu);

private:
    void rebuild();
    void refresh();

    CommandContext m_context;
    QAction& m_noneRow;
    QMenu& m_menu;
    QList<QAction*> m_rows;
};

} // namespace quillabrae::shell
