// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <optional>

namespace quillabrae::model {

/// An image on its way into the program, from the clipboard, a drop or a file.
struct PastedImage {
    PngBytes pngData;
    /// Pixel size, each side at least 1.
    double width = 1.0;
    double height = 1.0;
    /// Where on the canvas it was copied, when that is known.
    std::optional<double> sourceX;
    std::optional<double> sourceY;

    friend bool operator==(const PastedImage&, const PastedImage&) = default;
};

} // namespace quillabrae::model
