// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/PictureCoverage.h"
#include "model/PaintProject.h"
#include "model/PngBytes.h"
#include "raster/RasterImage.h"

#include <QRectF>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace quillabrae::canvas {

/// Pixels that stand on the canvas, stretched to `target` (canvas pixels).
struct CanvasPicture {
    raster::RasterImage image;
    QRectF target;
    std::uint8_t fraction = 255;
    /// Null when nothing is known of the pixels, because they are being drawn on.
    std::shared_ptr<PictureCoverage> coverage;
};

/// What layers show, bottom first: each visible layer's pixels, followed by the floating pixels
/// that belong to it. Layers without readable pixels show nothing.
///
/// Decoded a group at a time, since the pixels of all of them may be more than there is memory:
/// each group is laid over what the groups before it came to, which gives the very pixels that all
/// at once would.
class LayerPictures {
public:
    /// Project, layers and coverage outlive this.
    LayerPictures(const model::PaintProject& project, std::span<const model::PaintLayer> layers,
                  CoverageCache& coverage);

    bool isAtEnd() const { return m_next == m_sources.size(); }

    /// The next pictures: as many as it takes to come to `groupBudget()` bytes of pixels, or all
    /// that are left. None when what was left cannot be read.
    std::vector<CanvasPicture> nextGroup();

    /// Half of what the decode cache may hold, so that what a frame is made of can stay there.
    static std::size_t groupBudget();

private:
    struct Source {
        const model::PngBytes& bytes;
        QRectF target;
        std::uint8_t fraction;
    };

    CoverageCache& m_coverage;
    std::vector<Source> m_sources;
    std::size_t m_next = 0;
};

} // namespace quillabrae::canvas
