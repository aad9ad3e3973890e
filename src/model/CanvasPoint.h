// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::model {

/// A point in document coordinates: canvas pixels, origin at the top left, y down.
struct CanvasPoint {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const CanvasPoint&, const CanvasPoint&) = default;
};

} // namespace quillabrae::model
