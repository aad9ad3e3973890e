// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginLibraryFilter.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace quillabrae::effects {
namespace {

/// The context of this file's texts, for translators.
struct PluginLibraryFilterTexts {
    Q_DECLARE_TR_FUNCTIONS(PluginLibraryFilterTexts)
};

bool isMember(const QuillabraePlugin& plugin, const QSet<QString>& installedPluginIDs,
              const PluginLibraryFilter& filter) {
    if (std::holds_alternative<InstalledPlugins>(filter))
        return installedPluginIDs.contains(plugin.id);
    const auto* const category = std::get_if<QuillabraePluginCategory>(&filter);
    return !category || plugin.category == *category;
}

QString searchedText(const QuillabraePlugin& plugin) {
    return QStringList{title(plugin), tagline(plugin), details(plugin), plugin.author,
                       title(plugin.category)}
        .join(u' ');
}

bool isSearch(const QString& searchText) {
    return !searchText.trimmed().isEmpty();
}

} // namespace

std::vector<QuillabraePlugin> filteredPlugins(std::span<const QuillabraePlugin> catalog,
                                              const QSet<QString>& installedPluginIDs,
                                              const PluginLibraryFilter& filter,
                                              const QString& searchText) {
    const QString sought = searchText.trimmed();
    std::vector<QuillabraePlugin> shown;
    std::ranges::copy_if(catalog, std::back_inserter(shown), [&](const auto& plugin) {
        return isMember(plugin, installedPluginIDs, filter) &&
               (sought.isEmpty() || searchedText(plugin).contains(sought, Qt::CaseInsensitive));
    });
    return shown;
}

QString sectionTitle(const PluginLibraryFilter& filter, const QString& searchText) {
    if (isSearch(searchText)) return PluginLibraryFilterTexts::tr("Search results");
    if (std::holds_alternative<DiscoverPlugins>(filter))
        return PluginLibraryFilterTexts::tr("Made for Quillabrae");
    if (std::holds_alternative<InstalledPlugins>(filter))
        return PluginLibraryFilterTexts::tr("Your plugins");
    return title(std::get<QuillabraePluginCategory>(filter));
}

QString sectionSubtitle(const PluginLibraryFilter& filter) {
    if (std::holds_alternative<DiscoverPlugins>(filter))
        return PluginLibraryFilterTexts::tr(
            "Small, focused tools that extend your editing workflow.");
    if (std::holds_alternative<InstalledPlugins>(filter))
        return PluginLibraryFilterTexts::tr("Run or remove plugins installed on this Mac.");
    return PluginLibraryFilterTexts::tr("Curated effects, installed in one click.");
}

PluginLibraryEmptyState emptyState(const PluginLibraryFilter& filter, const QString& searchText) {
    if (std::holds_alternative<InstalledPlugins>(filter) && !isSearch(searchText))
        return {PluginLibraryFilterTexts::tr("No plugins installed"),
                PluginLibraryFilterTexts::tr(
                    "Discover a plugin and install it to add it to your Plugins menu.")};
    return {PluginLibraryFilterTexts::tr("No matching plugins"),
            PluginLibraryFilterTexts::tr("Try another search or browse a different category.")};
}

} // namespace quillabrae::effects
