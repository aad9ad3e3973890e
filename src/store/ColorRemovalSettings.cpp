// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ColorRemovalSettings.h"

#include "model/Vocabulary.h"

#include <QCoreApplication>

namespace quillabrae::store {
namespace {

using Preset = ColorRemovalPreset;

struct Row {
    Preset value = Preset::primary;
    const char* rawText = nullptr;
    const char* title = nullptr;
    /// Of no meaning for the tools' colours.
    model::ColorValue color;
};

constexpr std::array<Row, 12> table{{
    {Preset::primary, "primary", QT_TRANSLATE_NOOP("ColorRemovalPreset", "Primary Color"), {}},
    {Preset::secondary,
     "secondary",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Secondary Color"),
     {}},
    {Preset::white,
     "white",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "White"),
     {1.0, 1.0, 1.0, 1.0}},
    {Preset::black,
     "black",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Black"),
     {0.0, 0.0, 0.0, 1.0}},
    {Preset::red, "red", QT_TRANSLATE_NOOP("ColorRemovalPreset", "Red"), {1.0, 0.0, 0.0, 1.0}},
    {Preset::blue, "blue", QT_TRANSLATE_NOOP("ColorRemovalPreset", "Blue"), {0.0, 0.25, 1.0, 1.0}},
    {Preset::green,
     "green",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Green"),
     {0.0, 0.75, 0.2, 1.0}},
    {Preset::yellow,
     "yellow",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Yellow"),
     {1.0, 0.9, 0.0, 1.0}},
    {Preset::cyan, "cyan", QT_TRANSLATE_NOOP("ColorRemovalPreset", "Cyan"), {0.0, 0.8, 1.0, 1.0}},
    {Preset::magenta,
     "magenta",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Magenta"),
     {1.0, 0.0, 0.8, 1.0}},
    {Preset::orange,
     "orange",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Orange"),
     {1.0, 0.45, 0.0, 1.0}},
    {Preset::purple,
     "purple",
     QT_TRANSLATE_NOOP("ColorRemovalPreset", "Purple"),
     {0.45, 0.2, 0.9, 1.0}},
}};

const Row& row(ColorRemovalPreset preset) {
    return model::vocabularyRow(std::span<const Row>(table), preset);
}

} // namespace

std::array<ColorRemovalPreset, 12> allColorRemovalPresets() {
    std::array<ColorRemovalPreset, 12> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(ColorRemovalPreset preset) {
    return QString::fromLatin1(row(preset).rawText);
}

std::optional<ColorRemovalPreset> colorRemovalPresetFromRawText(QStringView rawText) {
    return model::caseFromRawText(std::span<const Row>(table), rawText);
}

QString title(ColorRemovalPreset preset) {
    return QCoreApplication::translate("ColorRemovalPreset", row(preset).title);
}

model::ColorValue colorOf(ColorRemovalPreset preset, const model::PaintAppSettings& settings) {
    model::ColorValue color = row(preset).color;
    if (preset == ColorRemovalPreset::primary) color = settings.primaryColor;
    if (preset == ColorRemovalPreset::secondary) color = settings.secondaryColor;
    color.alpha = 1.0;
    return color;
}

} // namespace quillabrae::store
