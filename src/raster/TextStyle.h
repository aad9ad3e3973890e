// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasTextAlignment.h"

#include <QString>

namespace quillabrae::raster {

/// How a text looks, its colour apart.
struct TextStyle {
    QString fontFamily;
    bool isBold = false;
    bool isItalic = false;
    bool isUnderlined = false;
    bool isStruckThrough = false;
    model::CanvasTextAlignment alignment = model::CanvasTextAlignment::left;
    /// The em in canvas pixels. A text whose size is not positive and finite has no extent.
    double fontSize = 20.0;

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

} // namespace quillabrae::raster
