// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/QuillabraePlugin.h"

#include "model/ByteSink.h"
#include "model/JsonError.h"
#include "model/JsonFields.h"
#include "model/Vocabulary.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillabrae::effects {
namespace {

struct CategoryRow {
    QuillabraePluginCategory value;
    const char* rawText;
    const char* title;
    const char* symbolName;
};

constexpr std::array categories{
    CategoryRow{QuillabraePluginCategory::color, "color",
                QT_TRANSLATE_NOOP("PluginCategory", "Color"), "paintpalette"},
    CategoryRow{QuillabraePluginCategory::stylize, "stylize",
                QT_TRANSLATE_NOOP("PluginCategory", "Stylize"), "wand.and.stars"},
    CategoryRow{QuillabraePluginCategory::detail, "detail",
                QT_TRANSLATE_NOOP("PluginCategory", "Detail"), "viewfinder"},
};

struct AccentRow {
    QuillabraePluginAccent value = QuillabraePluginAccent::amber;
    const char* rawText = nullptr;
    model::ColorValue color;
};

constexpr std::array accents{
    AccentRow{QuillabraePluginAccent::amber, "amber", {0.88, 0.55, 0.1, 1.0}},
    AccentRow{QuillabraePluginAccent::blue, "blue", {0.16, 0.48, 0.9, 1.0}},
    AccentRow{QuillabraePluginAccent::coral, "coral", {0.91, 0.31, 0.24, 1.0}},
    AccentRow{QuillabraePluginAccent::graphite, "graphite", {0.34, 0.36, 0.4, 1.0}},
    AccentRow{QuillabraePluginAccent::mint, "mint", {0.1, 0.63, 0.48, 1.0}},
    AccentRow{QuillabraePluginAccent::violet, "violet", {0.52, 0.35, 0.84, 1.0}},
};

struct EffectRow {
    QuillabraePluginEffect value;
    const char* rawText;
};

constexpr std::array effects{
    EffectRow{QuillabraePluginEffect::bloom, "bloom"},
    EffectRow{QuillabraePluginEffect::colorLift, "colorLift"},
    EffectRow{QuillabraePluginEffect::comicInk, "comicInk"},
    EffectRow{QuillabraePluginEffect::monochrome, "monochrome"},
    EffectRow{QuillabraePluginEffect::posterize, "posterize"},
    EffectRow{QuillabraePluginEffect::sharpen, "sharpen"},
};

template <typename Row, std::size_t size, typename Case>
const Row& rowOf(const std::array<Row, size>& table, Case value) {
    return model::vocabularyRow(std::span<const Row>(table), value);
}

template <typename Row, std::size_t size>
auto casesOf(const std::array<Row, size>& table) {
    std::array<decltype(Row::value), size> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

template <typename Row, std::size_t size>
auto caseOf(const std::array<Row, size>& table, QStringView rawText) {
    return model::caseFromRawText(std::span<const Row>(table), rawText);
}

} // namespace

std::array<QuillabraePluginCategory, 3> allPluginCategories() {
    return casesOf(categories);
}

QString title(QuillabraePluginCategory category) {
    return QCoreApplication::translate("PluginCategory", rowOf(categories, category).title);
}

QString symbolName(QuillabraePluginCategory category) {
    return QString::fromLatin1(rowOf(categories, category).symbolName);
}

QString rawText(QuillabraePluginCategory category) {
    return QString::fromLatin1(rowOf(categories, category).rawText);
}

std::optional<QuillabraePluginCategory> pluginCategoryFromRawText(QStringView rawText) {
    return caseOf(categories, rawText);
}

model::ColorValue color(QuillabraePluginAccent accent) {
    return rowOf(accents, accent).color;
}

QString rawText(QuillabraePluginAccent accent) {
    return QString::fromLatin1(rowOf(accents, accent).rawText);
}

std::optional<QuillabraePluginAccent> pluginAccentFromRawText(QStringView rawText) {
    return caseOf(accents, rawText);
}

std::array<QuillabraePluginEffect, 6> allPluginEffects() {
    return casesOf(effects);
}

QString rawText(QuillabraePluginEffect effect) {
    return QString::fromLatin1(rowOf(effects, effect).rawText);
}

std::optional<QuillabraePluginEffect> pluginEffectFromRawText(QStringView rawText) {
    return caseOf(effects, rawText);
}

} // namespace quillabrae::effects

namespace quillabrae::model {

using effects::QuillabraePlugin;

template <>
struct JsonForm<effects::QuillabraePluginCategory>
    : VocabularyJsonForm<effects::QuillabraePluginCategory, effects::pluginCategoryFromRawText> {};
template <>
struct JsonForm<effects::QuillabraePluginAccent>
    : VocabularyJsonForm<effects::QuillabraePluginAccent, effects::pluginAccentFromRawText> {};
template <>
struct JsonForm<effects::QuillabraePluginEffect>
    : VocabularyJsonForm<effects::QuillabraePluginEffect, effects::pluginEffectFromRawText> {};

namespace {

constexpr auto fields = jsonFields(
    required("accent", &QuillabraePlugin::accent), required("author", &QuillabraePlugin::author),
    required("category", &QuillabraePlugin::category),
    required("details", &QuillabraePlugin::details), required("effect", &QuillabraePlugin::effect),
    required("id", &QuillabraePlugin::id), required("isFeatured", &QuillabraePlugin::isFeatured),
    required("symbolName", &QuillabraePlugin::symbolName),
    required("tagline", &QuillabraePlugin::tagline), required("title", &QuillabraePlugin::title),
    required("version", &QuillabraePlugin::version));

} // namespace
} // namespace quillabrae::model

namespace quillabrae::effects {

QByteArray manifest(const QuillabraePlugin& plugin) {
    model::ByteArraySink sink;
    model::JsonWriter writer(sink);
    model::writeFields(writer, plugin, model::fields);
    writer.finish();
    return sink.take();
}

std::optional<QuillabraePlugin> pluginFromManifest(const QByteArray& manifest) {
    try {
        QuillabraePlugin plugin;
        model::JsonReader reader(manifest);
        model::readFields(reader, plugin, model::fields);
        reader.finish();
        return plugin;
    } catch (const model::JsonError&) {
        return std::nullopt;
    }
}

} // namespace quillabrae::effects
