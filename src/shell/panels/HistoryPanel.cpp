// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/HistoryPanel.h"

#include "shell/commands/CommandTable.h"
#include "shell/panels/HistoryList.h"
#include "store/ProjectStore.h"

#include <QVBoxLayout>

#include <array>

namespace quillabrae::shell {
namespace {

using Context = PanelContext;

PanelButton buttonOf(CommandID id, void (*run)(const Context& context)) {
    const Command& row = command(id);
    return {row.title, row.symbol, row.help, row.isEnabled, run};
}

} // namespace

std::span<const PanelButton> historyButtons() {
    static const std::array buttons{
        buttonOf(CommandID::undo,
                 [](const Context& c) { c.store.undo(*c.store.activeProjectID()); }),
        buttonOf(CommandID::redo,
                 [](const Context& c) { c.store.redo(*c.store.activeProjectID()); }),
    };
    return buttons;
}

HistoryPanel::HistoryPanel(PanelContext context, QWidget* parent)
    : FloatingPanel(tr("History"), parent) {
    content()->addWidget(new HistoryList(context.store, this), 1);
    content()->addWidget(new PanelButtons(historyButtons(), std::move(context), this));
}

} // namespace quillabrae::shell
