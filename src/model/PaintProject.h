// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/FloatingPixelSelection.h"
#include "model/PaintLayer.h"
#include "model/PixelSelection.h"

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>
#include <vector>

namespace quillabrae::model {

struct PastedImage;

constexpr double defaultResolutionDPI = 96.0;

/// A document: a plain value. Copies share their pixels, so undo keeps whole projects.
///
/// `layers` is never empty in a project that the user sees, and `selectedLayerID` names one of
/// them; code that looks the layer up does nothing when it is not there.
/// `isCanvasSelected` and `pixelSelection` are independent: a selected canvas with no
/// `pixelSelection` is selected whole.
struct PaintProject {
    QUuid id;
    QString title;
    std::optional<QUrl> fileURL;
    double canvasWidth = 1.0;
    double canvasHeight = 1.0;
    double resolutionDPI = defaultResolutionDPI;
    QUuid selectedLayerID;
    bool isCanvasSelected = false;
    std::optional<PixelSelection> pixelSelection;
    std::optional<FloatingPixelSelection> floatingSelection;
    /// Bottom layer first, top layer last.
    std::vector<PaintLayer> layers;
    QDateTime lastModified;

    /// A project made of one image, selected whole. `number` counts the projects made so.
    static PaintProject fromPastedImage(const PastedImage& image, int number);

    /// The layer that commands work on, or null when `selectedLayerID` is stale.
    const PaintLayer* selectedLayer() const;
    PaintLayer* selectedLayer();

    /// The name in tabs and prompts: the stem of the file's name, or the title without a file.
    QString displayName() const;

    friend bool operator==(const PaintProject&, const PaintProject&) = default;
};

} // namespace quillabrae::model
