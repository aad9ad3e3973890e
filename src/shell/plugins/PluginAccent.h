// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/QuillabraePlugin.h"

#include <QColor>

namespace quillabrae::shell {

/// The tint of the plugin's card.
inline QColor accentColor(const effects::QuillabraePlugin& plugin) {
    const model::ColorValue accent = effects::color(plugin.accent);
    return QColor::fromRgbF(static_cast<float>(accent.red), static_cast<float>(accent.green),
                            static_cast<float>(accent.blue), static_cast<float>(accent.alpha));
}

} // namespace quillabrae::shell
