// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/CanvasShape.h"
#include "model/ColorValue.h"
#include "model/PaintTool.h"
#include "model/ShapeDrawingMode.h"

#include <QUuid>

#include <optional>
#include <vector>

namespace quillabrae::model {

/// One raster drawing operation, handed to the engine and then forgotten.
struct PaintStroke {
    QUuid id;
    PaintTool tool = PaintTool::paintbrush;
    ColorValue color;
    /// Second colour, for gradients and shape fills.
    std::optional<ColorValue> secondaryColor;
    /// In canvas pixels.
    double lineWidth = 1.0;
    /// Percentage; absent means a hard edge.
    std::optional<double> hardness;
    std::vector<CanvasPoint> points;
    std::optional<CanvasShape> shape;
    std::optional<ShapeDrawingMode> shapeDrawingMode;

    friend bool operator==(const PaintStroke&, const PaintStroke&) = default;
};

} // namespace quillabrae::model
