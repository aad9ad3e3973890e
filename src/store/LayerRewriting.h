// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "platform/WorkRunner.h"
#include "raster/RasterImage.h"

#include <QSizeF>

#include <functional>

namespace quillabrae::store {

/// What happens to every layer when the canvas takes another size.
struct CanvasRewrite {
    /// What the user is told it is called: "Resize".
    QString name;
    /// What the user is told while it goes on.
    QString progressTitle;
    /// The canvas afterwards, in pixels.
    QSizeF size;
    double resolutionDPI = model::defaultResolutionDPI;
    /// From a layer's picture at the former size to the one at the new size. Runs on any thread.
    std::function<raster::RasterImage(const raster::RasterImage&)> rewritten;
};

/// "800 x 600", truncated to whole pixels.
QString sizeText(QSizeF size);

/// Runs `step(0)` to `step(count - 1)` on idle threads, each once and in any order, and says how
/// far it is. Throws platform::WorkCancelled when the user does not wait.
void runSteps(platform::WorkRunner& work, const QString& title, std::size_t count,
              const std::function<void(std::size_t)>& step);

enum class RewriteOutcome { done, cancelled, failed };

/// Replaces the pixels of every layer, hidden, locked and empty ones too. Works on one layer a
/// thread, so that no more than two pictures are held for each. The layers are as they were unless
/// all of them were rewritten.
RewriteOutcome rewriteLayers(model::PaintProject& project, const CanvasRewrite& rewrite,
                             platform::WorkRunner& work);

} // namespace quillabrae::store
