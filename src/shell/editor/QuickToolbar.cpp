// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/QuickToolbar.h"

#include "shell/controls/Divider.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/SidewaysScroller.h"
#include "shell/controls/TextSize.h"
#include "shell/editor/ToolOptions.h"
#include "shell/looks/Style.h"
#include "store/ProjectStore.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quillabrae::shell {
namespace {

constexpr int barHeight = 44;
constexpr int buttonExtent = 32;
/// So that the widest options fit behind the buttons in the narrowest window.
constexpr int buttonSpacing = 2;

} // namespace

QuickToolbar::QuickToolbar(CommandContext context, QWidget* parent)
    : QWidget(parent), m_context(context) {
    TextSize::follow(*this, [this] { setFixedHeight(TextSize::rowHeight(*this, barHeight)); });
    setAccessibleName(tr("Quick toolbar"));
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(Style::grid, 0, Style::grid, 0);
    layout->setSpacing(buttonSpacing);
    for (const ToolbarItem& item : quickToolbarItems()) add(item, layout);
    layout->addWidget(new Divider(this));
    layout->addWidget(new ToolOptions(m_context.store, this));
    layout->addStretch();
    m_scroller = new SidewaysScroller(row, this);
    m_scroller->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    auto* whole = new QHBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 1);
    whole->addWidget(m_scroller);
    followStore();
    refresh();
}

QSize QuickToolbar::minimumSizeHint() const {
    return {m_scroller->widget()->minimumSizeHint().width(), height()};
}

void QuickToolbar::add(const ToolbarItem& item, QHBoxLayout* layout) {
    if (item.isDivider()) {
        layout->addWidget(new Divider(this));
        return;
    }
    const Command& row = command(item.id);
    auto* button = new IconButton({.symbolName = QString::fromLatin1(item.symbol(m_context.store)),
                                   .title = item.title(),
                                   .help = help(row),
                                   .extent = buttonExtent},
                                  this);
    connect(button, &QAbstractButton::clicked, this, [this, &row] { row.run(m_context); });
    layout->addWidget(button);
    m_entries.push_back({&item, button});
}

void QuickToolbar::followStore() {
    using store::ProjectStore;
    const ProjectStore* store = &m_context.store;
    connect(store, &ProjectStore::openProjectsChanged, this, &QuickToolbar::refresh);
    connect(store, &ProjectStore::activeProjectChanged, this, &QuickToolbar::refresh);
    connect(store, &ProjectStore::historyChanged, this, &QuickToolbar::refresh);
    connect(store, &ProjectStore::settingsChanged, this, &QuickToolbar::refresh);
}

void QuickToolbar::refresh() {
    for (const auto& [item, button] : m_entries) {
        button->setEnabled(command(item->id).isEnabled(m_context.store));
        button->setSymbolName(QString::fromLatin1(item->symbol(m_context.store)));
    }
}

void QuickToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), Style::line(palette()));
}

} // namespace quillabrae::shell
