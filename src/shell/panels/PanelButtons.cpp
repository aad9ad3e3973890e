// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/PanelButtons.h"

#include "shell/controls/IconButton.h"
#include "shell/looks/Style.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>
#include <QHBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr int buttonExtent = 28;

} // namespace

PanelButtons::PanelButtons(std::span<const PanelButton> table, PanelContext context,
                           QWidget* parent)
    : QWidget(parent), m_context(std::move(context)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid / 4);
    for (const PanelButton& row : table) {
        // The leading edge is lined up for the first half, so that bubbles stay by their panel.
        const bool isLeading = 2 * m_entries.size() < table.size();
        auto* button =
            new IconButton({.symbolName = QString::fromLatin1(row.symbol),
                            .title = QCoreApplication::translate("PanelButton", row.title),
                            .help = QCoreApplication::translate("PanelButton", row.help),
                            .extent = buttonExtent,
                            .iconExtent = Style::smallIcon,
                            .tooltipPlacement = isLeading ? HoverTooltipPlacement::aboveLeading
                                                          : HoverTooltipPlacement::aboveTrailing},
                           this);
        connect(button, &QAbstractButton::clicked, this, [this, &row] { row.run(m_context); });
        layout->addWidget(button);
        m_entries.push_back({&row, button});
    }
    layout->addStretch();

    using store::ProjectStore;
    const ProjectStore* store = &m_context.store;
    connect(store, &ProjectStore::activeProjectChanged, this, &PanelButtons::refresh);
    connect(store, &ProjectStore::openProjectsChanged, this, &PanelButtons::refresh);
    connect(store, &ProjectStore::projectChanged, this, &PanelButtons::refresh);
    connect(store, &ProjectStore::historyChanged, this, &PanelButtons::refresh);
    refresh();
}

void PanelButtons::refresh() {
    for (const auto& [row, button] : m_entries) button->setEnabled(row->isEnabled(m_context.store));
}

} // namespace quillabrae::shell
