// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintAppSettings.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::model {
namespace {

// Not a number counts as the default, which lies in the range.
double inRange(double value, double lower, double upper, double fallback) {
    return std::isnan(value) ? fallback : std::clamp(value, lower, upper);
}

} // namespace

PaintAppSettings PaintAppSettings::clamped() const {
    const PaintAppSettings standard;
    PaintAppSettings result = *this;
    result.brushSize = inRange(brushSize, 1.0, 512.0, standard.brushSize);
    result.shapeOutlineWidth =
        inRange(std::round(shapeOutlineWidth), 1.0, 32.0, standard.shapeOutlineWidth);
    result.pencilHardness = inRange(pencilHardness, 0.0, 100.0, standard.pencilHardness);
    result.magicWandMatchPercentage =
        inRange(magicWandMatchPercentage, 0.0, 100.0, standard.magicWandMatchPercentage);
    result.paintBucketMatchPercentage =
        inRange(paintBucketMatchPercentage, 0.0, 100.0, standard.paintBucketMatchPercentage);
    result.textFontSize = inRange(textFontSize, 1.0, 512.0, standard.textFontSize);
    result.zoomScale = inRange(zoomScale, minimumZoomScale, maximumZoomScale, standard.zoomScale);
    return result;
}

} // namespace quillabrae::model
