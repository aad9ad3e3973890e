// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::effects {

/// Where a plugin stands in the library.
enum class QuillabraePluginCategory { color, stylize, detail };
std::array<QuillabraePluginCategory, 3> allPluginCategories();
QString title(QuillabraePluginCategory category);
QString symbolName(QuillabraePluginCategory category);
QString rawText(QuillabraePluginCategory category);
std::optional<QuillabraePluginCategory> pluginCategoryFromRawText(QStringView rawText);

/// The tint of a plugin's card.
enum class QuillabraePluginAccent { amber, blue, coral, graphite, mint, violet };
/// In sRGB, opaque.
model::ColorValue color(QuillabraePluginAccent accent);
QString rawText(QuillabraePluginAccent accent);
std::optional<QuillabraePluginAccent> pluginAccentFromRawText(QStringView rawText);

/// What a plugin does to a layer.
enum class QuillabraePluginEffect { bloom, colorLift, comicInk, monochrome, posterize, sharpen };
std::array<QuillabraePluginEffect, 6> allPluginEffects();
QString rawText(QuillabraePluginEffect effect);
std::optional<QuillabraePluginEffect> pluginEffectFromRawText(QStringView rawText);

/// One effect as the library offers it.
struct QuillabraePlugin {
    /// In reverse-domain form; also the name of its install folder.
    QString id;
    QString title;
    /// One line.
    QString tagline;
    /// One sentence.
    QString details;
    QString author;
    QString version;
    QuillabraePluginCategory category = QuillabraePluginCategory::color;
    QString symbolName;
    QuillabraePluginAccent accent = QuillabraePluginAccent::amber;
    QuillabraePluginEffect effect = QuillabraePluginEffect::bloom;
    /// Shown before all others.
    bool isFeatured = false;

    friend bool operator==(const QuillabraePlugin&, const QuillabraePlugin&) = default;
};

/// The plugin's texts in the user's language. Its fields are what its manifest says.
QString title(const QuillabraePlugin& plugin);
QString tagline(const QuillabraePlugin& plugin);
QString details(const QuillabraePlugin& plugin);

/// The plugin as a JSON object with its field names as keys, sorted, pretty-printed.
QByteArray manifest(const QuillabraePlugin& plugin);
/// The plugin of such an object, whose keys may stand in any order; others are passed over. Nothing
/// for bytes that are no plugin.
std::optional<QuillabraePlugin> pluginFromManifest(const QByteArray& manifest);

} // namespace quillabrae::effects
