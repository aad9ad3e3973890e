// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginCatalog.h"

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
    Row{"studio.quillabrae.ink-press", "Ink Press", "Turn a layer into bold, printed linework.",
        "A graphic comic treatment with crisp shadows and expressive ink texture.",
        Category::stylize, "scribble.variable", Accent::coral, Effect::comicInk, true},
    Row{"studio.quillabrae.color-lift", "Color Lift", "Bring restrained color back to life.",
        "Raises muted colors while keeping skin tones and already-saturated areas controlled.",
        Category::color, "paintpalette.fill", Accent::blue, Effect::colorLift, false},
    Row{"studio.quillabrae.monoform", "Monoform", "A dimensional black-and-white finish.",
        "Builds rich monochrome contrast without reducing the image to a flat grayscale "
        "conversion.",
        Category::color, "circle.lefthalf.filled", Accent::graphite, Effect::monochrome, false},
    Row{"studio.quillabrae.pixel-poster", "Pixel Poster",
        "Reduce color into confident graphic bands.",
        "Posterizes the active layer into a compact palette for punchy artwork and references.",
        Category::stylize, "square.grid.3x3.fill", Accent::violet, Effect::posterize, false},
    Row{"studio.quillabrae.crisp-edge", "Crisp Edge", "Recover definition without harsh halos.",
        "Adds a measured luminance sharpen pass to screenshots, scans, and soft exports.",
        Category::detail, "viewfinder", Accent::mint, Effect::sharpen, false},
    Row{"studio.quillabrae.soft-light", "Soft Light", "Add a quiet glow to bright detail.",
        "Blooms highlights with a compact radius for atmospheric type, lights, and illustration.",
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

} // namespace

std::vector<QuillabraePlugin> pluginCatalog() {
    std::vector<QuillabraePlugin> catalog;
    for (const Row& row : rows) catalog.push_back(pluginOf(row));
    return catalog;
}

} // namespace quillabrae::effects
