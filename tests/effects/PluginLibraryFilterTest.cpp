// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginCatalog.h"
#include "effects/PluginLibraryFilter.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace quillabrae::effects {
namespace {

QString shown(const PluginLibraryFilter& filter, const QString& searchText = QString(),
              const QSet<QString>& installed = {}) {
    QStringList titles;
    for (const auto& plugin : filteredPlugins(pluginCatalog(), installed, filter, searchText))
        titles.append(plugin.title);
    return titles.join(u',');
}

const QString all =
    QStringLiteral("Ink Press,Color Lift,Monoform,Pixel Poster,Crisp Edge,Soft Light");

TEST(PluginLibraryFilter, DiscoverShowsAll) {
    EXPECT_EQ(shown(DiscoverPlugins{}), all);
}

TEST(PluginLibraryFilter, InstalledShowsWhatIsInstalledInTheCataloguesOrder) {
    EXPECT_EQ(shown(InstalledPlugins{}), QString());
    EXPECT_EQ(shown(InstalledPlugins{}, {},
                    {QStringLiteral("studio.quillabrae.soft-light"),
                     QStringLiteral("studio.quillabrae.monoform"), QStringLiteral("unknown")}),
              QStringLiteral("Monoform,Soft Light"));
}

TEST(PluginLibraryFilter, ACategoryShowsItsOwn) {
    EXPECT_EQ(shown(QuillabraePluginCategory::color), QStringLiteral("Color Lift,Monoform"));
    EXPECT_EQ(shown(QuillabraePluginCategory::stylize), QStringLiteral("Ink Press,Pixel Poster"));
    EXPECT_EQ(shown(QuillabraePluginCategory::detail), QStringLiteral("Crisp Edge,Soft Light"));
}

TEST(PluginLibraryFilter, BlanksAreNoSearch) {
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral(" \t\n ")), all);
    EXPECT_EQ(sectionTitle(DiscoverPlugins{}, QStringLiteral("  ")),
              QStringLiteral("Made for Quillabrae"));
}

TEST(PluginLibraryFilter, SearchLooksIntoEverythingACardSays) {
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral("stylize")),
              QStringLiteral("Ink Press,Pixel Poster"));
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral("SOFT LIGHT")), QStringLiteral("Soft Light"));
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral("  quiet glow\n")),
              QStringLiteral("Soft Light"));
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral("screenshots")),
              QStringLiteral("Crisp Edge"));
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral("quillabrae studio")), all);
    EXPECT_EQ(shown(DiscoverPlugins{}, QStringLiteral("nothing of the kind")), QString());
}

TEST(PluginLibraryFilter, SearchStaysWithinTheChoice) {
    EXPECT_EQ(shown(QuillabraePluginCategory::color, QStringLiteral("black")),
              QStringLiteral("Monoform"));
    EXPECT_EQ(shown(QuillabraePluginCategory::detail, QStringLiteral("black")), QString());
}

TEST(PluginLibraryFilter, TitlesAndSubtitles) {
    EXPECT_EQ(sectionTitle(InstalledPlugins{}, {}), QStringLiteral("Your plugins"));
    EXPECT_EQ(sectionTitle(QuillabraePluginCategory::detail, {}), QStringLiteral("Detail"));
    EXPECT_EQ(sectionTitle(InstalledPlugins{}, QStringLiteral("x")),
              QStringLiteral("Search results"));
    EXPECT_EQ(sectionSubtitle(DiscoverPlugins{}),
              QStringLiteral("Small, focused tools that extend your editing workflow."));
    EXPECT_EQ(sectionSubtitle(QuillabraePluginCategory::color),
              QStringLiteral("Curated effects, installed in one click."));
}

TEST(PluginLibraryFilter, EmptyStates) {
    EXPECT_EQ(emptyState(InstalledPlugins{}, {}).title, QStringLiteral("No plugins installed"));
    EXPECT_EQ(emptyState(InstalledPlugins{}, QStringLiteral("x")).title,
              QStringLiteral("No matching plugins"));
    EXPECT_EQ(emptyState(DiscoverPlugins{}, QStringLiteral("x")).text,
              QStringLiteral("Try another search or browse a different category."));
}

} // namespace
} // namespace quillabrae::effects
