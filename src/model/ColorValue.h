// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::model {

/// A colour in straight (unpremultiplied) components, each 0 to 1.
struct ColorValue {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;

    friend bool operator==(const ColorValue&, const ColorValue&) = default;
};

} // namespace quillabrae::model
