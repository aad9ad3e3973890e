// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/SelectionCoverage.h"

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/SurfaceSize.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {
namespace {

/// The pixels of an extent that begins on a pixel's border. At a canvas's fractional end it may
/// reach less than a pixel past those that the surface has.
int pixelLength(double origin, double length, int surfaceLength) {
    return std::min(static_cast<int>(std::max(std::round(length), 1.0)),
                    surfaceLength - static_cast<int>(origin));
}

} // namespace

std::optional<SelectionCoverage> SelectionCoverage::of(const QRectF& rect, double canvasWidth,
                                                       double canvasHeight) {
    const std::optional<QSize> surface = surfaceSize(canvasWidth, canvasHeight);
    if (!surface) return std::nullopt;
    const QRectF aligned = LayerRasterService::pixelAlignedRect(rect, canvasWidth, canvasHeight);
    if (!(aligned.width() > 0.0) || !(aligned.height() > 0.0)) return std::nullopt;
    const QRect pixels(static_cast<int>(aligned.x()), static_cast<int>(aligned.y()),
                       pixelLength(aligned.x(), aligned.width(), surface->width()),
                       pixelLength(aligned.y(), aligned.height(), surface->height()));
    if (pixels.isEmpty()) return std::nullopt;
    return SelectionCoverage(pixels, aligned.size());
}

std::optional<SelectionCoverage> SelectionCoverage::of(const model::PixelSelection& selection,
                                                       double canvasWidth, double canvasHeight) {
    std::optional<SelectionCoverage> coverage =
        of(QRectF(selection.x, selection.y, selection.width, selection.height), canvasWidth,
           canvasHeight);
    if (!coverage || !selection.maskPNGData) return coverage;
    coverage->m_mask = decodedImage(*selection.maskPNGData);
    const QSize size = coverage->m_rect.size();
    coverage->m_columns = stretchSamples(coverage->m_mask.width(), 0, size.width(), size.width());
    coverage->m_rows = stretchSamples(coverage->m_mask.height(), 0, size.height(), size.height());
    return coverage;
}

void SelectionCoverage::readRow(int y, std::span<std::uint8_t> coverage) const {
    const std::uint8_t* alpha = m_mask.row(m_rows.source[static_cast<std::size_t>(y)]) + 3;
    for (std::size_t i = 0; i < coverage.size(); ++i)
        coverage[i] = alpha[4 * static_cast<std::size_t>(m_columns.source[i])];
}

} // namespace quillabrae::raster
