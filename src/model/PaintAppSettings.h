// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasAnchor.h"
#include "model/CanvasShape.h"
#include "model/CanvasTextAlignment.h"
#include "model/ColorValue.h"
#include "model/PaintTool.h"
#include "model/ShapeDrawingMode.h"

#include <QString>

namespace quillabrae::model {

/// The tool state that survives a restart, one JSON record in the preferences.
struct PaintAppSettings {
    PaintTool selectedTool = PaintTool::paintbrush;
    ColorValue primaryColor{0.0, 0.0, 0.0, 1.0};
    ColorValue secondaryColor{1.0, 1.0, 1.0, 1.0};
    /// Canvas pixels, 1 to 512.
    double brushSize = 5.0;
    CanvasShape selectedShape = CanvasShape::rectangle;
    ShapeDrawingMode shapeDrawingMode = ShapeDrawingMode::outline;
    /// Whole canvas pixels, 1 to 32.
    double shapeOutlineWidth = 2.0;
    /// Percentage, 0 to 100; also serves the eraser and the line.
    double pencilHardness = 100.0;
    double magicWandMatchPercentage = 50.0;
    double paintBucketMatchPercentage = 50.0;
    QString textFontFamily = QStringLiteral("Helvetica Neue");
    /// 1 to 512.
    double textFontSize = 20.0;
    CanvasTextAlignment textAlignment = CanvasTextAlignment::left;
    bool textBold = false;
    bool textItalic = false;
    bool textUnderline = false;
    bool textStrikethrough = false;
    /// Screen points for each canvas pixel, 0.1 to 64.
    double zoomScale = 1.0;
    bool showsPixelGrid = false;
    CanvasAnchor lastCanvasResizeAnchor = CanvasAnchor::left;

    /// The same settings with every value brought into its range.
    PaintAppSettings clamped() const;

    friend bool operator==(const PaintAppSettings&, const PaintAppSettings&) = default;
};

constexpr double minimumZoomScale = 0.1;
constexpr double maximumZoomScale = 64.0;

} // namespace quillabrae::model
