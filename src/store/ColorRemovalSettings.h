// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"
#include "model/PaintAppSettings.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::store {

/// The colours that can be removed; the first two are what the tools paint with at that moment.
enum class ColorRemovalPreset {
    primary,
    secondary,
    white,
    black,
    red,
    blue,
    green,
    yellow,
    cyan,
    magenta,
    orange,
    purple,
};

std::array<ColorRemovalPreset, 12> allColorRemovalPresets();

QString rawText(ColorRemovalPreset preset);
std::optional<ColorRemovalPreset> colorRemovalPresetFromRawText(QStringView rawText);
QString title(ColorRemovalPreset preset);
/// The opaque colour that a preset stands for.
model::ColorValue colorOf(ColorRemovalPreset preset, const model::PaintAppSettings& settings);

struct ColorRemovalSettings {
    /// 0 to 20; the higher, the narrower the removal.
    double tolerancePercentage = 1.0;
    /// 0 to 255: the alpha up to which a pixel becomes fully transparent.
    double transparentAlphaThresholdPercentage = 0.0;
    ColorRemovalPreset preset = ColorRemovalPreset::primary;

    friend bool operator==(const ColorRemovalSettings&, const ColorRemovalSettings&) = default;
};

} // namespace quillabrae::store
