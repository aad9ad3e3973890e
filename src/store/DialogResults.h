// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasAnchor.h"

#include <QString>

/// What the dialogs of commands answer.
namespace quillabrae::store {

struct LayerPropertiesDialogResult {
    QString name;
    double opacity = 1.0;
    bool isVisible = true;
    bool isLocked = false;

    friend bool operator==(const LayerPropertiesDialogResult&,
                           const LayerPropertiesDialogResult&) = default;
};

/// A size in canvas pixels; the anchor counts only where the canvas is resized around its pixels.
struct ResizeDialogResult {
    double width = 1.0;
    double height = 1.0;
    double resolutionDPI = 96.0;
    model::CanvasAnchor anchor = model::CanvasAnchor::center;

    friend bool operator==(const ResizeDialogResult&, const ResizeDialogResult&) = default;
};

struct RotateZoomDialogResult {
    /// Clockwise on the screen.
    double angleDegrees = 0.0;
    double zoomPercentage = 100.0;

    friend bool operator==(const RotateZoomDialogResult&, const RotateZoomDialogResult&) = default;
};

} // namespace quillabrae::store
