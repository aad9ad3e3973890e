// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <QUuid>

namespace quillabrae::model {

/// An image to be baked into a layer, stretched to its rectangle in document coordinates.
struct PaintImage {
    QUuid id;
    PngBytes pngData;
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    friend bool operator==(const PaintImage&, const PaintImage&) = default;
};

} // namespace quillabrae::model
