// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterServiceGenerativeMasks.h"

#include "raster/AlphaMask.h"
#include "raster/BlendKernels.h"
#include "raster/LayerPixels.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRewrite.h"
#include "raster/SelectionCoverage.h"
#include "raster/SurfaceSize.h"

#include <algorithm>

namespace quillabrae::raster::LayerRasterService {
namespace {

/// What must stay of row `y` of the covered rectangle.
void fillKept(const SelectionCoverage& coverage, int y, std::span<std::uint8_t> kept) {
    if (!coverage.isMasked()) {
        std::ranges::fill(kept, std::uint8_t{0});
        return;
    }
    coverage.readRow(y, kept);
    for (std::uint8_t& alpha : kept) alpha = static_cast<std::uint8_t>(255 - alpha);
}

/// An edit mask of that size, which the covered rectangle lies on with its top left at `origin`.
std::optional<model::PngBytes> editMask(const SelectionCoverage& coverage, QSize size,
                                        QPoint origin) {
    const QRect rect(origin, coverage.rect().size());
    const auto fill = [&](int y, std::span<std::uint8_t> alpha) {
        std::ranges::fill(alpha, std::uint8_t{255});
        const int row = y - rect.top();
        if (row < 0 || row >= rect.height()) return;
        fillKept(coverage, row,
                 alpha.subspan(static_cast<std::size_t>(rect.left()),
                               static_cast<std::size_t>(rect.width())));
    };
    return alphaMaskPNGData(size, [&](int, int) { return fill; });
}

/// Each pixel kept as far as it is covered; the image is of the rectangle's size.
void keepCovered(RasterImage& image, const SelectionCoverage& coverage) {
    const auto width = static_cast<std::size_t>(image.width());
    std::vector<std::uint8_t> row(width);
    for (int y = 0; y < image.height(); ++y) {
        coverage.readRow(y, row);
        destinationInPixels(image.mutableRow(y), row.data(), width);
    }
}

} // namespace

std::optional<model::PngBytes> generativeEditMaskPNGData(const model::PixelSelection& selection,
                                                         double canvasWidth, double canvasHeight) {
    const auto coverage = SelectionCoverage::of(selection, canvasWidth, canvasHeight);
    if (!coverage) return std::nullopt;
    return editMask(*coverage, coverage->rect().size(), {0, 0});
}

std::optional<model::PngBytes> fullCanvasGenerativeEditMaskPNGData(
    const model::PixelSelection& selection, double canvasWidth, double canvasHeight) {
    const std::optional<QSize> canvas = surfaceSize(canvasWidth, canvasHeight);
    const auto coverage = SelectionCoverage::of(selection, canvasWidth, canvasHeight);
    if (!canvas || !coverage) return std::nullopt;
    return editMask(*coverage, *canvas, coverage->rect().topLeft());
}

bool applyGeneratedImage(const RasterImage& image, model::PaintLayer& layer, double canvasWidth,
                         double canvasHeight, const model::PixelSelection& selection) {
    const auto coverage = SelectionCoverage::of(selection, canvasWidth, canvasHeight);
    if (!coverage || image.isNull()) return false;
    const LayerRewrite rewrite(layer, canvasWidth, canvasHeight);
    if (rewrite.image().isNull()) return false;
    RasterImage output = clearedImage(rewrite.image(), *coverage);
    if (output.isNull()) return false;
    const QRect rect = coverage->rect();
    RasterImage fitted = resizedCopy(image, rect.width(), rect.height());
    if (coverage->isMasked()) keepCovered(fitted, *coverage);
    drawImage(output, fitted, rect);
    rewrite.store(output, rect);
    return true;
}

} // namespace quillabrae::raster::LayerRasterService
