// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintAppSettings.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::model {

PaintAppSettings PaintAppSettings::clamped() const {
    PaintAppSettings result = *this;
    result.brushSize = std::clamp(brushSize, 1.0, 512.0);
    result.shapeOutlineWidth = std::clamp(std::round(shapeOutlineWidth), 1.0, 32.0);
    result.pencilHardness = std::clamp(pencilHardness, 0.0, 100.0);
    result.magicWandMatchPercentage = std::clamp(magicWandMatchPercentage, 0.0, 100.0);
    result.paintBucketMatchPercentage = std::clamp(paintBucketMatchPercentage, 0.0, 100.0);
    result.textFontSize = std::clamp(textFontSize, 1.0, 512.0);
    result.zoomScale = std::clamp(zoomScale, minimumZoomScale, maximumZoomScale);
    return result;
}

} // namespace quillabrae::model
