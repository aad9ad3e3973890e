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

// clang-format off
constexpr std::array buttons{
    PanelButton{"Undo", "arrow.uturn.backward", "Steps back to the previous history item.",
                CommandPredicates::canUndo, [](const Context& c) { c.store.undo(*c.store.activeProjectID()); }},
    PanelButton{"Redo", "arrow.uturn.forward", "Restores the next history item.",
                CommandPredicates::canRedo, [](const Context& c) { c.store.redo(*c.store.activeProjectID()); }},
};
// clang-format on

} // namespace

std::span<const PanelButton> historyButtons() {
    return buttons;
}

HistoryPanel::HistoryPanel(PanelContext context, QWidget* parent)
    : FloatingPanel(QStringLiteral("History"), parent) {
    content()->addWidget(new HistoryList(context.store, this), 1);
    content()->addWidget(new PanelButtons(buttons, std::move(context), this));
}

} // namespace quillabrae::shell
