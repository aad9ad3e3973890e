// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/plugins/PluginLibraryView.h"

#include "effects/PluginLibraryError.h"
#include "effects/PluginLibraryService.h"
#include "shell/controls/ControlScroller.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SideList.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/dialogs/Alert.h"
#include "shell/looks/Style.h"
#include "shell/plugins/PluginCard.h"
#include "store/ProjectStore.h"

#include <QAction>
#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>

namespace quillabrae::shell {
namespace {

using effects::PluginLibraryError;
using effects::PluginLibraryFilter;
using effects::QuillabraePlugin;
using effects::QuillabraePluginCategory;

constexpr int sideWidth = 208;
constexpr int margin = 24;
constexpr int leastCardWidth = 260;
constexpr int emptySymbol = 48;
constexpr qreal titleFactor = 1.7;

/// A row of the side; one without a filter is a heading.
struct SideRow {
    QString symbolName;
    QString title;
    std::optional<PluginLibraryFilter> filter;
};

std::vector<SideRow> sideRows() {
    std::vector<SideRow> rows{
        {QStringLiteral("square.grid.2x2"), PluginLibraryView::tr("Discover"),
         effects::DiscoverPlugins{}},
        {QStringLiteral("checkmark.circle"), PluginLibraryView::tr("Installed"),
         effects::InstalledPlugins{}},
        {{}, PluginLibraryView::tr("Categories"), std::nullopt},
    };
    for (const QuillabraePluginCategory category : effects::allPluginCategories())
        rows.push_back({symbolName(category), title(category), category});
    return rows;
}

} // namespace

Alert pluginFailureAlert(const QString& description) {
    return {PluginLibraryView::tr("Plugin Library"),
            description.isEmpty() ? PluginLibraryView::tr("Something went wrong.") : description,
            {PluginLibraryView::tr("OK")}};
}

PluginLibraryView::PluginLibraryView(PluginLibraryContext context) : m_context(std::move(context)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* side = new QVBoxLayout;
    buildSide(*side);
    layout->addLayout(side);
    buildContent();
    layout->addWidget(m_scroll, 1);
    auto* find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_search, [this] { m_search->setFocus(); });
    auto* closing = new QAction(this);
    closing->setShortcut(QKeySequence::Close);
    connect(closing, &QAction::triggered, this, &QWidget::close, Qt::QueuedConnection);
    addActions({find, closing});
    followServices();
    m_side->setCurrentRow(0);
    m_side->setFocus();
}

void PluginLibraryView::buildSide(QVBoxLayout& column) {
    column.setContentsMargins(Style::grid, 2 * Style::grid, Style::grid, Style::grid);
    column.setSpacing(2 * Style::grid);
    m_search = new QLineEdit(this);
    m_search->setPlaceholderText(tr("Search plugins"));
    m_search->setAccessibleName(tr("Search plugins"));
    m_search->setClearButtonEnabled(true);
    m_search->setTextMargins(Style::grid / 2, 0, Style::grid / 2, 0);
    column.addWidget(m_search);
    m_side = new SideList(tr("Library"), this);
    for (const SideRow& row : sideRows()) {
        if (row.filter)
            m_side->addRow(row.symbolName, row.title);
        else
            m_side->addHeading(row.title);
    }
    m_side->fitWidth(sideWidth - 2 * Style::grid);
    column.addWidget(m_side, 1);
    connect(m_search, &QLineEdit::textChanged, this, &PluginLibraryView::refresh);
    connect(m_side, &SideList::currentRowChanged, this, &PluginLibraryView::choose);
}

void PluginLibraryView::buildContent() {
    m_scroll = new ControlScroller(this);
    m_content = new QWidget;
    auto* column = new QVBoxLayout(m_content);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(Style::grid / 2);
    m_title = Labels::title({}, titleFactor, m_content);
    m_subtitle = Labels::muted({}, m_content);
    column->addWidget(m_title);
    column->addWidget(m_subtitle);
    column->addSpacing(2 * Style::grid);
    const auto& catalog = m_context.plugins.catalog();
    const auto featured = std::ranges::find(catalog, true, &QuillabraePlugin::isFeatured);
    if (featured != catalog.end()) {
        m_featured = makeCard(*featured, true);
        column->addWidget(m_featured);
        column->addSpacing(2 * Style::grid);
    }
    for (const QuillabraePlugin& plugin : catalog) m_cards.push_back(makeCard(plugin, false));
    m_grid = new QGridLayout;
    m_grid->setSpacing(2 * Style::grid);
    column->addLayout(m_grid);
    buildEmptyState(*column);
    column->addStretch(1);
    m_outcome = Labels::muted({}, m_content);
    m_outcome->setObjectName(QStringLiteral("pluginOutcome"));
    column->addWidget(m_outcome);
    m_scroll->viewport()->installEventFilter(this);
    m_scroll->setWidget(m_content);
}

void PluginLibraryView::buildEmptyState(QVBoxLayout& column) {
    m_empty = new QWidget(m_content);
    auto* lines = new QVBoxLayout(m_empty);
    lines->setContentsMargins(0, 10 * Style::grid, 0, 0);
    lines->setSpacing(Style::grid);
    lines->addWidget(new SymbolLabel(QStringLiteral("magnifyingglass"), emptySymbol, m_empty), 0,
                     Qt::AlignHCenter);
    m_emptyTitle = Labels::title({}, 1.3, m_empty);
    m_emptyText = Labels::muted({}, m_empty);
    lines->addWidget(m_emptyTitle, 0, Qt::AlignHCenter);
    lines->addWidget(m_emptyText, 0, Qt::AlignHCenter);
    column.addWidget(m_empty);
}

PluginCard* PluginLibraryView::makeCard(const QuillabraePlugin& plugin, bool isFeatured) {
    auto* card = new PluginCard(
        plugin, isFeatured ? PluginCard::Kind::featured : PluginCard::Kind::plain, m_content);
    connect(card, &PluginCard::installRequested, this, [this, card] { install(card->plugin()); });
    connect(card, &PluginCard::runRequested, this, [this, card] { run(card->plugin()); });
    connect(card, &PluginCard::removeRequested, this, [this, card] { uninstall(card->plugin()); });
    return card;
}

void PluginLibraryView::followServices() {
    connect(&m_context.plugins, &effects::PluginLibraryService::installedPluginIDsChanged, this,
            &PluginLibraryView::refresh);
    const auto follow = [this](auto signal) {
        connect(&m_context.store, signal, this, &PluginLibraryView::showStates);
    };
    follow(&store::ProjectStore::openProjectsChanged);
    follow(&store::ProjectStore::activeProjectChanged);
}

void PluginLibraryView::choose(int row) {
    const auto rows = sideRows();
    if (row < 0 || static_cast<std::size_t>(row) >= rows.size()) return;
    const auto& filter = rows[static_cast<std::size_t>(row)].filter;
    if (!filter) return;
    m_filter = *filter;
    m_outcome->clear();
    m_scroll->ensureVisible(0, 0);
    refresh();
}

std::vector<QuillabraePlugin> PluginLibraryView::filteredPlugins() const {
    return effects::filteredPlugins(m_context.plugins.catalog(),
                                    m_context.plugins.installedPluginIDs(), m_filter,
                                    m_search->text());
}

void PluginLibraryView::refresh() {
    const std::vector<QuillabraePlugin> plugins = filteredPlugins();
    m_title->setText(sectionTitle(m_filter, m_search->text()));
    m_subtitle->setText(sectionSubtitle(m_filter));
    const bool isSearch = !m_search->text().trimmed().isEmpty();
    if (m_featured != nullptr)
        m_featured->setVisible(!isSearch &&
                               std::holds_alternative<effects::DiscoverPlugins>(m_filter));
    const auto empty = emptyState(m_filter, m_search->text());
    m_emptyTitle->setText(empty.title);
    m_emptyText->setText(empty.text);
    m_empty->setVisible(plugins.empty());

    std::vector<PluginCard*> shown;
    const PluginCard* lost = nullptr;
    for (PluginCard* card : m_cards) {
        const bool isShown = std::ranges::find(plugins, card->plugin()) != plugins.end();
        if (!isShown && card->isAncestorOf(QApplication::focusWidget())) lost = card;
        if (isShown) shown.push_back(card);
    }
    if (shown != m_shown) {
        m_shown = std::move(shown);
        layOutCards();
    }
    showStates();
    if (lost != nullptr) rescueKeyboard(lost);
    for (PluginCard* card : m_cards)
        card->setVisible(std::ranges::find(m_shown, card) != m_shown.end());
}

void PluginLibraryView::showStates() {
    const bool canRun = m_context.store.hasActiveProject();
    const auto show = [&](PluginCard* card) {
        const bool isInstalled = m_context.plugins.installedPluginIDs().contains(card->plugin().id);
        card->showState({isInstalled, canRun});
    };
    if (m_featured != nullptr) show(m_featured);
    std::ranges::for_each(m_cards, show);
}

void PluginLibraryView::rescueKeyboard(const PluginCard* lost) {
    const auto place = std::ranges::find(m_cards, lost);
    const auto isShown = [this](PluginCard* card) {
        return std::ranges::find(m_shown, card) != m_shown.end();
    };
    auto next = std::find_if(place, m_cards.end(), isShown);
    if (next == m_cards.end()) next = std::find_if(m_cards.begin(), place, isShown);
    if (next == m_cards.end() || !isShown(*next)) return m_side->setFocus(Qt::OtherFocusReason);
    (*next)->show();
    (*next)->focusButtons();
}

int PluginLibraryView::columnsThatFit() const {
    const int room = m_scroll->viewport()->width() - 2 * margin + m_grid->spacing();
    return std::max(room / (leastCardWidth + m_grid->spacing()), 1);
}

void PluginLibraryView::layOutCards() {
    for (PluginCard* card : m_cards) m_grid->removeWidget(card);
    const int former = m_columns;
    m_columns = columnsThatFit();
    for (int column = 0; column < std::max(former, m_columns); ++column)
        m_grid->setColumnStretch(column, column < m_columns ? 1 : 0);
    int index = 0;
    for (PluginCard* card : m_shown) {
        m_grid->addWidget(card, index / m_columns, index % m_columns);
        ++index;
    }
}

bool PluginLibraryView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_scroll->viewport() && event->type() == QEvent::Resize &&
        columnsThatFit() != m_columns)
        layOutCards();
    return QWidget::eventFilter(watched, event);
}

void PluginLibraryView::install(const QuillabraePlugin& plugin) {
    try {
        m_context.plugins.install(plugin);
    } catch (const PluginLibraryError& error) {
        tellFailure(error.description());
    }
}

void PluginLibraryView::uninstall(const QuillabraePlugin& plugin) {
    try {
        m_context.plugins.uninstall(plugin);
    } catch (const PluginLibraryError& error) {
        tellFailure(error.description());
    }
}

void PluginLibraryView::run(const QuillabraePlugin& plugin) {
    m_context.runPlugin(plugin.id);
    m_outcome->setText(m_context.store.statusMessage());
}

void PluginLibraryView::tellFailure(const QString& description) {
    // Once the press that led here is over.
    QTimer::singleShot(
        0, this, [this, alert = pluginFailureAlert(description)] { m_context.alert(alert, this); });
}

void PluginLibraryView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !m_search->text().isEmpty()) {
        m_search->clear();
        m_search->setFocus();
        return;
    }
    QWidget::keyPressEvent(event);
}

void PluginLibraryView::paintEvent(QPaintEvent*) {
    paintSide(*this, m_side->width() + 2 * Style::grid);
}

} // namespace quillabrae::shell
