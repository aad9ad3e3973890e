// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace quillabrae::model {

/// One canvas-sized layer. Without pixels it is fully transparent.
struct PaintLayer {
    QUuid id;
    QString name;
    bool isVisible = true;
    bool isLocked = false;
    /// 0 to 1, applied on display, merge and export; the stored pixels are at full strength.
    double opacity = 1.0;
    std::optional<PngBytes> bitmapPNGData;

    friend bool operator==(const PaintLayer&, const PaintLayer&) = default;
};

} // namespace quillabrae::model
