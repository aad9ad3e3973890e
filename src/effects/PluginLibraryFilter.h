// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/QuillabraePlugin.h"

#include <QSet>
#include <QString>

#include <span>
#include <variant>
#include <vector>

/// What the library window shows, and the words it shows it under.
namespace quillabrae::effects {

struct DiscoverPlugins {
    friend bool operator==(const DiscoverPlugins&, const DiscoverPlugins&) = default;
};
struct InstalledPlugins {
    friend bool operator==(const InstalledPlugins&, const InstalledPlugins&) = default;
};

/// The choice in the library's sidebar: all plugins, those that are installed, or a category's.
using PluginLibraryFilter =
    std::variant<DiscoverPlugins, InstalledPlugins, QuillabraePluginCategory>;

/// The plugins of the choice, in their order, in which the search text occurs: anywhere in what a
/// card says, in any case. Blanks around the text do not count; an empty text is no search.
std::vector<QuillabraePlugin> filteredPlugins(std::span<const QuillabraePlugin> catalog,
                                              const QSet<QString>& installedPluginIDs,
                                              const PluginLibraryFilter& filter,
                                              const QString& searchText);

QString sectionTitle(const PluginLibraryFilter& filter, const QString& searchText);
QString sectionSubtitle(const PluginLibraryFilter& filter);

/// What stands in the place of cards where there are none.
struct PluginLibraryEmptyState {
    QString title;
    QString text;
};
PluginLibraryEmptyState emptyState(const PluginLibraryFilter& filter, const QString& searchText);

} // namespace quillabrae::effects
