// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"

#include <QPointF>

#include <optional>

namespace quillabrae::canvas {

/// The keyboard's and the pointer's state at the moment of asking.
class PointerState {
public:
    virtual ~PointerState() = default;

    virtual Modifiers modifiers() const = 0;
    /// The pointer in screen points from the top left of the viewport, which it may be outside of;
    /// none when it is not known.
    virtual std::optional<QPointF> viewportLocation() const = 0;
};

} // namespace quillabrae::canvas
