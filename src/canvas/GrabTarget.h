// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/DraftHandles.h"
#include "canvas/SelectionHandle.h"

#include <optional>

namespace quillabrae::canvas {

/// What a press at some place would take hold of ahead of the canvas itself: at most one of these.
struct GrabTarget {
    /// Null for none.
    const DraftHandle* draftHandle = nullptr;
    /// The text of the draft.
    bool isText = false;
    std::optional<SelectionHandle> selectionHandle;

    friend bool operator==(const GrabTarget&, const GrabTarget&) = default;
};

} // namespace quillabrae::canvas
