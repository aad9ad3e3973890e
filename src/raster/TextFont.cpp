// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/TextFont.h"

#include <QFontDatabase>
#include <QStringList>

#include <optional>

namespace quillabrae::raster {
namespace {

/// A name without what full names and PostScript names write differently.
QString squeezed(QString name) {
    name.remove(QLatin1Char(' '));
    name.remove(QLatin1Char('-'));
    return name.toCaseFolded();
}

/// The face whose full name is `name`: a family's name, and a style's behind it.
std::optional<QFont> faceNamed(const QString& name) {
    const QString wanted = squeezed(name);
    if (wanted.isEmpty()) return std::nullopt;
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        const QString prefix = squeezed(family);
        if (!wanted.startsWith(prefix)) continue;
        const QStringList styles = QFontDatabase::styles(family);
        for (const QString& style : styles) {
            if (prefix + squeezed(style) == wanted) return QFontDatabase::font(family, style, 12);
        }
    }
    return std::nullopt;
}

QFont familyFont(const QString& family) {
    QFont font;
    font.setFamilies(QStringList(family));
    return font;
}

QFont fallbackFont(const QString& name) {
    return faceNamed(name).value_or(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
}

/// A style name would win over the weight and the slant that are set.
void convertTraits(QFont& font, const TextStyle& style) {
    if (!style.isBold && !style.isItalic) return;
    font.setStyleName(QString());
    if (style.isBold) font.setBold(true);
    if (style.isItalic) font.setItalic(true);
}

} // namespace

QFont textFont(const TextStyle& style, int pixelSize) {
    QFont font = QFontDatabase::hasFamily(style.fontFamily) ? familyFont(style.fontFamily)
                                                            : fallbackFont(style.fontFamily);
    convertTraits(font, style);
    font.setPixelSize(pixelSize);
    font.setUnderline(style.isUnderlined);
    font.setStrikeOut(style.isStruckThrough);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

} // namespace quillabrae::raster
