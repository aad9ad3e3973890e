// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <optional>

namespace quillabrae::model {

/// The outline of a selection: a bounding rectangle in document coordinates, and the shape inside
/// it. Without a mask the whole rectangle is selected. The rectangle may overhang the canvas.
struct PixelSelection {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
    std::optional<PngBytes> maskPNGData;

    friend bool operator==(const PixelSelection&, const PixelSelection&) = default;
};

} // namespace quillabrae::model
