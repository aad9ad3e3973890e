// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <QUuid>

namespace quillabrae::model {

/// Pixels lifted from a layer or pasted, part of no layer yet. The project's selection rectangle
/// says where they stand and how large they are shown; without one they stand at (0, 0) at their
/// natural size.
struct FloatingPixelSelection {
    PngBytes pngData;
    double width = 0.0;
    double height = 0.0;
    /// The layer that receives the pixels when they are put down.
    QUuid layerID;

    friend bool operator==(const FloatingPixelSelection&, const FloatingPixelSelection&) = default;
};

} // namespace quillabrae::model
