// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/GenerativeFillRequest.h"
#include "store/AlignObjectAction.h"
#include "store/ColorRemovalSettings.h"
#include "store/DialogResults.h"

#include <variant>

namespace quillabrae::store {

enum class FlipDirection { horizontal, vertical };

/// A command that can be run again on whatever is active, with what it was given.
namespace RepeatableActions {

struct FlipLayer {
    FlipDirection direction = FlipDirection::horizontal;
    friend bool operator==(const FlipLayer&, const FlipLayer&) = default;
};
struct AlignObject {
    AlignObjectAction action = AlignObjectAction::topLeft;
    friend bool operator==(const AlignObject&, const AlignObject&) = default;
};
struct ColorRemoval {
    ColorRemovalSettings settings;
    friend bool operator==(const ColorRemoval&, const ColorRemoval&) = default;
};
struct RotateZoom {
    RotateZoomDialogResult result;
    friend bool operator==(const RotateZoom&, const RotateZoom&) = default;
};
struct ResizeImage {
    ResizeDialogResult result;
    friend bool operator==(const ResizeImage&, const ResizeImage&) = default;
};
struct ResizeCanvas {
    ResizeDialogResult result;
    friend bool operator==(const ResizeCanvas&, const ResizeCanvas&) = default;
};
struct GenerativeFill {
    effects::GenerativeFillRequest request;
    friend bool operator==(const GenerativeFill&, const GenerativeFill&) = default;
};
struct InvertImage {
    friend bool operator==(const InvertImage&, const InvertImage&) = default;
};

} // namespace RepeatableActions

using RepeatablePaintAction =
    std::variant<RepeatableActions::FlipLayer, RepeatableActions::AlignObject,
                 RepeatableActions::ColorRemoval, RepeatableActions::RotateZoom,
                 RepeatableActions::ResizeImage, RepeatableActions::ResizeCanvas,
                 RepeatableActions::GenerativeFill, RepeatableActions::InvertImage>;

} // namespace quillabrae::store
