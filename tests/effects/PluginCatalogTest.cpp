// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginCatalog.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillabrae::effects {
namespace {

QuillabraePlugin inkPress() {
    return pluginCatalog().front();
}

TEST(PluginCatalog, HoldsSixPluginsInTheLibrarysOrder) {
    QStringList titles;
    for (const QuillabraePlugin& plugin : pluginCatalog()) titles.append(plugin.title);
    EXPECT_EQ(titles.join(u','),
              QStringLiteral("Ink Press,Color Lift,Monoform,Pixel Poster,Crisp Edge,Soft Light"));
}

TEST(PluginCatalog, OffersEveryEffectOnce) {
    for (const QuillabraePluginEffect effect : allPluginEffects())
        EXPECT_EQ(std::ranges::count(pluginCatalog(), effect, &QuillabraePlugin::effect), 1);
}

TEST(PluginCatalog, FeaturesInkPressAlone) {
    EXPECT_EQ(std::ranges::count(pluginCatalog(), true, &QuillabraePlugin::isFeatured), 1);
    EXPECT_TRUE(inkPress().isFeatured);
}

TEST(PluginCatalog, NamesOneMakerAndOneVersion) {
    for (const QuillabraePlugin& plugin : pluginCatalog()) {
        EXPECT_EQ(plugin.author, QStringLiteral("Quillabrae Studio"));
        EXPECT_EQ(plugin.version, QStringLiteral("1.0.0"));
        EXPECT_EQ(plugin.id, QStringLiteral("studio.quillabrae.") +
                                 plugin.title.toLower().replace(u' ', u'-'));
    }
}

TEST(QuillabraePlugin, TitlesAndSymbolsOfCategories) {
    QStringList texts;
    for (const QuillabraePluginCategory category : allPluginCategories())
        texts.append(title(category) + u'/' + symbolName(category));
    EXPECT_EQ(texts.join(u' '),
              QStringLiteral("Color/paintpalette Stylize/wand.and.stars Detail/viewfinder"));
}

TEST(QuillabraePlugin, AccentsAreOpaqueColours) {
    EXPECT_EQ(color(QuillabraePluginAccent::coral), (model::ColorValue{0.91, 0.31, 0.24, 1.0}));
    EXPECT_EQ(color(QuillabraePluginAccent::graphite), (model::ColorValue{0.34, 0.36, 0.4, 1.0}));
}

TEST(QuillabraePlugin, ManifestHasEveryFieldUnderItsNameSorted) {
    const QByteArray text = manifest(inkPress());
    EXPECT_EQ(QString::fromUtf8(text), QStringLiteral(R"({
  "accent": "coral",
  "author": "Quillabrae Studio",
  "category": "stylize",
  "details": "A graphic comic treatment with crisp shadows and expressive ink texture.",
  "effect": "comicInk",
  "id": "studio.quillabrae.ink-press",
  "isFeatured": true,
  "symbolName": "scribble.variable",
  "tagline": "Turn a layer into bold, printed linework.",
  "title": "Ink Press",
  "version": "1.0.0"
})"));
}

TEST(QuillabraePlugin, ComesBackFromItsManifest) {
    for (const QuillabraePlugin& plugin : pluginCatalog())
        EXPECT_EQ(pluginFromManifest(manifest(plugin)), plugin);
}

TEST(QuillabraePlugin, ReadsAManifestWhateverItsLayout) {
    const QJsonObject object = QJsonDocument::fromJson(manifest(inkPress())).object();
    EXPECT_EQ(pluginFromManifest(QJsonDocument(object).toJson(QJsonDocument::Compact)), inkPress());
}

TEST(QuillabraePlugin, IsNotReadFromWhatIsNoManifest) {
    const QJsonObject whole = QJsonDocument::fromJson(manifest(inkPress())).object();
    for (const QString& key : whole.keys()) {
        QJsonObject lacking = whole;
        lacking.remove(key);
        EXPECT_FALSE(pluginFromManifest(QJsonDocument(lacking).toJson())) << qPrintable(key);
        QJsonObject wrong = whole;
        wrong[key] = 7;
        EXPECT_FALSE(pluginFromManifest(QJsonDocument(wrong).toJson())) << qPrintable(key);
    }
    QJsonObject unknown = whole;
    unknown[QStringLiteral("effect")] = QStringLiteral("melt");
    EXPECT_FALSE(pluginFromManifest(QJsonDocument(unknown).toJson()));
    EXPECT_FALSE(pluginFromManifest(QByteArray()));
    EXPECT_FALSE(pluginFromManifest(QByteArray("[]")));
    EXPECT_FALSE(pluginFromManifest(manifest(inkPress()).chopped(1)));
}

} // namespace
} // namespace quillabrae::effects
