// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginCatalog.h"

#include <QCoreApplication>

namespace quillabrae::effects {
namespace {

using Category = QuillabraePluginCategory;
using Accent = QuillabraePluginAccent;
using Effect = QuillabraePluginEffect;

struct Row {
    const char* id;
    const char* title;
    const char* tagline;
    const char* details;
    Category category;
    const char* symbolName;
    Accent accent;
    Effect effect;
    bool isFeatured;
};

constexpr std::array rows{
    Row{"studio.quillabrae.ink-press", QT_TRANSLATE_NOOP("PluginCatalog", "Ink Press"),
        QT_TRANSLATE_NOOP("PluginCatalog", "Turn a layer into bold, printed linework."),
        QT_TRANSLATE_NOOP(
            "PluginCatalog",
            "A graphic comic treatment with crisp shadows and expressive ink texture."),
        Category::stylize, "scribble.variable", Accent::coral, Effect::comicInk, true},
    Row{"studio.quillabrae.color-lift", QT_TRANSLATE_NOOP("PluginCatalog", "Color Lift"),
        QT_TRANSLATE_NOOP("PluginCatalog", "Bring restrained color back to life."),
        QT_TRANSLATE_NOOP(
            "PluginCatalog",
            "Raises muted colors while keeping skin tones and already-saturated areas controlled."),
        Category::color, "paintpalette.fill", Accent::blue, Effect::colorLift, false},
    Row{"studio.quillabrae.monoform", QT_TRANSLATE_NOOP("PluginCatalog", "Monoform"),
        QT_TRANSLATE_NOOP("PluginCatalog", "A dimensional black-and-white finish."),
        QT_TRANSLATE_NOOP(
            "PluginCatalog",
            "Builds rich monochrome contrast without reducing the image to a flat grayscale "
            "conversion."),
        Category::color, "circle.lefthalf.filled", Accent::graphite, Effect::monochrome, false},
    Row{"studio.quillabrae.pixel-poster", QT_TRANSLATE_NOOP("PluginCatalog", "Pixel Poster"),
        QT_TRANSLATE_NOOP("PluginCatalog", "Reduce color into confident graphic bands."),
        QT_TRANSLATE_NOOP("PluginCatalog",
                          "Posterizes the active layer into a compact palette for punchy artwork "
                          "and references."),
        Category::stylize, "square.grid.3x3.fill", Accent::violet, Effect::posterize, false},
    Row{"studio.quillabrae.crisp-edge", QT_TRANSLATE_NOOP("PluginCatalog", "Crisp Edge"),
        QT_TRANSLATE_NOOP("PluginCatalog", "Recover definition without harsh halos."),
        QT_TRANSLATE_NOOP(
            "PluginCatalog",
            "Adds a measured luminance sharpen pass to screenshots, scans, and soft exports."),
        Category::detail, "viewfinder", Accent::mint, Effect::sharpen, false},
    Row{"studio.quillabrae.soft-light", QT_TRANSLATE_NOOP("PluginCatalog", "Soft Light"),
        QT_TRANSLATE_NOOP("PluginCatalog", "Add a quiet glow to bright detail."),
        QT_TRANSLATE_NOOP("PluginCatalog",
                          "Blooms highlights with a compact radius for atmospheric type, lights, "
                          "and illustration."),
        Category::detail, "sun.max.fill", Accent::amber, Effect::bloom, false},
};

QuillabraePlugin pluginOf(const Row& row) {
    const auto text = [](const char* latin1) { return QString::fromLatin1(latin1); };
    return {.id = text(row.id),
            .title = text(row.title),
            .tagline = text(row.tagline),
            .details = text(row.details),
            .author = QStringLiteral("Quillabrae Studio"),
            .version = QStringLiteral("1.0.0"),
            .category = row.category,
            .symbolName = text(row.symbolName),
            .accent = row.accent,
            .effect = row.effect,
            .isFeatured = row.isFeatured};
}

QString translated(const QString& text) {
    return QCoreApplication::translate("PluginCatalog", text.toUtf8().constData());
}

} // namespace

QString title(const QuillabraePlugin& plugin) {
    return translated(plugin.title);
}
QString tagline(const QuillabraePlugin& plugin) {
    return translated(plugin.tagline);
}
QString details(const QuillabraePlugin& plugin) {
    return translated(plugin.details);
}

std::vector<QuillabraePlugin> pluginCatalog() {
    std::vector<QuillabraePlugin> catalog;
    for (const Row& row : rows) catalog.push_back(pluginOf(row));
    return catalog;
}

} // namespace quillabrae::effects
