// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/PluginLibraryFilter.h"

#include <QWidget>

#include <functional>
#include <vector>

class QGridLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace quillabrae::effects {
class PluginLibraryService;
}

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

struct Alert;
class ControlScroller;
class PluginCard;
class SideList;

/// What the library shows and does. The services outlive it.
struct PluginLibraryContext {
    effects::PluginLibraryService& plugins;
    store::ProjectStore& store;
    std::function<void(const QString& id)> runPlugin;
    /// Tells why something failed, and waits.
    std::function<void(const Alert& alert, QWidget* parent)> alert;
};

/// The alert of an install or a removal that failed, whose description may be empty.
Alert pluginFailureAlert(const QString& description);

/// The plugin library's window: a search and the choice of what to browse at the side, and the
/// plugins as cards, under the featured one where all are shown.
class PluginLibraryView final : public QWidget {
    Q_OBJECT

public:
    explicit PluginLibraryView(PluginLibraryContext context);

    const effects::PluginLibraryFilter& filter() const { return m_filter; }
    /// The plugins that the choice and the search leave, in order.
    std::vector<effects::QuillabraePlugin> filteredPlugins() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void buildSide(QVBoxLayout& column);
    void buildContent();
    void buildEmptyState(QVBoxLayout& column);
    PluginCard* makeCard(const effects::QuillabraePlugin& plugin, bool isFeatured);
    void followServices();
    void choose(int row);
    /// Shows the cards that the filter leaves, each as its plugin stands.
    void refresh();
    void showStates();
    void layOutCards();
    int columnsThatFit() const;
    /// Gives the keyboard to a card, or else to the side, when the card that had it is gone.
    void rescueKeyboard(const PluginCard* lost);
    void install(const effects::QuillabraePlugin& plugin);
    void uninstall(const effects::QuillabraePlugin& plugin);
    void run(const effects::QuillabraePlugin& plugin);
    void tellFailure(const QString& description);

    PluginLibraryContext m_context;
    effects::PluginLibraryFilter m_filter = effects::DiscoverPlugins{};
    QLineEdit* m_search = nullptr;
    SideList* m_side = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_subtitle = nullptr;
    ControlScroller* m_scroll = nullptr;
    QWidget* m_content = nullptr;
    PluginCard* m_featured = nullptr;
    QGridLayout* m_grid = nullptr;
    QWidget* m_empty = nullptr;
    QLabel* m_emptyTitle = nullptr;
    QLabel* m_emptyText = nullptr;
    QLabel* m_outcome = nullptr;
    /// One for each plugin, in the catalogue's order.
    std::vector<PluginCard*> m_cards;
    std::vector<PluginCard*> m_shown;
    int m_columns = 0;
};

} // namespace quillabrae::shell
