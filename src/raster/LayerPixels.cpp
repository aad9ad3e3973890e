// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerPixels.h"

#include "raster/BlendKernels.h"
#include "raster/InvertKernel.h"
#include "raster/MirrorKernel.h"
#include "raster/Parallel.h"
#include "raster/RowBands.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <vector>

namespace quillabrae::raster {
namespace {

std::size_t byteOffset(int x) {
    return 4 * static_cast<std::size_t>(x);
}

std::size_t pixelCount(const QRect& rect) {
    return static_cast<std::size_t>(rect.width());
}

int endX(const QRect& rect) {
    return rect.x() + rect.width();
}

int endY(const QRect& rect) {
    return rect.y() + rect.height();
}

/// Pixels and coverage of one row, for a thread to work in.
struct RowScratch {
    explicit RowScratch(const SelectionCoverage& coverage)
        : coverage(coverage.isMasked() ? pixelCount(coverage.rect()) : 0) {}

    std::vector<std::uint8_t> coverage;
    std::vector<std::uint8_t> lifted{};
    std::vector<std::uint8_t> turned{};
};

/// A new image that has the rectangle's pixels from `fn` and the others from `image`. Calls
/// `fn(scratch, y, from, to)` for each row of the rectangle, `y` 0 being its top, with the
/// rectangle's pixels of the old and the new image.
template <typename Fn>
RasterImage withRowsRewritten(const RasterImage& image, const SelectionCoverage& coverage, Fn fn) {
    RasterImage result = RasterImage::uninitialized(image.width(), image.height());
    if (result.isNull()) return result;
    result.setLogicalSize(image.logicalSize());
    const QRect rect = coverage.rect();
    const std::size_t stride = image.stride();
    const std::size_t left = byteOffset(rect.x());
    const std::size_t right = byteOffset(endX(rect));
    const std::uint8_t* const source = image.row(0);
    std::uint8_t* const target = result.mutableRow(0);
    parallelForRowBands(image.height(), rowsPerBand(image.width()), [&](int first, int last) {
        RowScratch scratch(coverage);
        for (int y = first; y < last; ++y) {
            const std::uint8_t* const from = source + static_cast<std::size_t>(y) * stride;
            std::uint8_t* const to = target + static_cast<std::size_t>(y) * stride;
            if (y < rect.y() || y >= endY(rect)) {
                std::memcpy(to, from, stride);
                continue;
            }
            std::memcpy(to, from, left);
            fn(scratch, y - rect.y(), from + left, to + left);
            std::memcpy(to + right, from + right, stride - right);
        }
    });
    return result;
}

/// A mirrored row of a masked rectangle: what is lifted off here makes room for what is set down.
class MaskedMirror {
public:
    MaskedMirror(const RasterImage& image, const SelectionCoverage& coverage, MirrorAxis axis)
        : m_image(image), m_coverage(coverage), m_axis(axis) {}

    void operator()(RowScratch& scratch, int y, const std::uint8_t* from, std::uint8_t* to) const {
        const QRect rect = m_coverage.rect();
        const std::size_t count = pixelCount(rect);
        scratch.lifted.resize(4 * count);
        m_coverage.readRow(y, scratch.coverage);
        std::memcpy(to, from, 4 * count);
        destinationOutPixels(to, scratch.coverage.data(), count);
        if (m_axis == MirrorAxis::vertical) {
            const int mirrored = rect.height() - 1 - y;
            m_coverage.readRow(mirrored, scratch.coverage);
            from = m_image.row(rect.y() + mirrored) + byteOffset(rect.x());
        }
        std::memcpy(scratch.lifted.data(), from, 4 * count);
        destinationInPixels(scratch.lifted.data(), scratch.coverage.data(), count);
        if (m_axis == MirrorAxis::vertical)
            return sourceOverPixels(to, scratch.lifted.data(), count, 255);
        scratch.turned.resize(4 * count);
        reversePixels(scratch.lifted.data(), scratch.turned.data(), count);
        sourceOverPixels(to, scratch.turned.data(), count, 255);
    }

private:
    const RasterImage& m_image;
    const SelectionCoverage& m_coverage;
    MirrorAxis m_axis;
};

} // namespace

RasterImage invertedImage(const RasterImage& image, const SelectionCoverage& coverage) {
    const std::size_t count = pixelCount(coverage.rect());
    std::atomic<bool> isAnyVisible = false;
    RasterImage result = withRowsRewritten(
        image, coverage,
        [&](RowScratch& scratch, int y, const std::uint8_t* from, std::uint8_t* to) {
            if (coverage.isMasked()) coverage.readRow(y, scratch.coverage);
            const std::uint8_t alpha = coverage.isMasked()
                                           ? invertPixels(from, to, scratch.coverage.data(), count)
                                           : invertPixels(from, to, count);
            if (alpha != 0) isAnyVisible.store(true, std::memory_order_relaxed);
        });
    return isAnyVisible ? result : RasterImage();
}

RasterImage croppedImage(const RasterImage& image, const SelectionCoverage& coverage) {
    const QRect rect = coverage.rect();
    // The coverage begins on the canvas, so only its ends can lie beyond a smaller image.
    const QRect shown = rect & QRect(0, 0, image.width(), image.height());
    RasterImage result = shown == rect ? RasterImage::uninitialized(rect.width(), rect.height())
                                       : RasterImage(rect.width(), rect.height());
    if (result.isNull()) return result;
    result.setLogicalSize(coverage.logicalSize());
    std::uint8_t* const target = result.mutableRow(0);
    parallelForRowBands(shown.height(), rowsPerBand(rect.width()), [&](int first, int last) {
        RowScratch scratch(coverage);
        for (int y = first; y < last; ++y) {
            std::uint8_t* const to = target + static_cast<std::size_t>(y) * result.stride();
            std::memcpy(to, image.row(rect.y() + y) + byteOffset(rect.x()),
                        byteOffset(shown.width()));
            if (!coverage.isMasked()) continue;
            coverage.readRow(y, scratch.coverage);
            destinationInPixels(to, scratch.coverage.data(), pixelCount(rect));
        }
    });
    return result;
}

RasterImage clearedImage(const RasterImage& image, const SelectionCoverage& coverage) {
    const std::size_t count = pixelCount(coverage.rect());
    return withRowsRewritten(
        image, coverage,
        [&](RowScratch& scratch, int y, const std::uint8_t* from, std::uint8_t* to) {
            if (!coverage.isMasked()) {
                std::memset(to, 0, 4 * count);
                return;
            }
            coverage.readRow(y, scratch.coverage);
            std::memcpy(to, from, 4 * count);
            destinationOutPixels(to, scratch.coverage.data(), count);
        });
}

RasterImage mirroredImage(const RasterImage& image, const SelectionCoverage& coverage,
                          MirrorAxis axis) {
    if (coverage.isMasked())
        return withRowsRewritten(image, coverage, MaskedMirror(image, coverage, axis));
    const QRect rect = coverage.rect();
    const std::size_t count = pixelCount(rect);
    if (axis == MirrorAxis::horizontal)
        return withRowsRewritten(
            image, coverage, [count](RowScratch&, int, const std::uint8_t* from, std::uint8_t* to) {
                reversePixels(from, to, count);
            });
    return withRowsRewritten(
        image, coverage, [&](RowScratch&, int y, const std::uint8_t*, std::uint8_t* to) {
            const std::uint8_t* const mirrored = image.row(rect.y() + rect.height() - 1 - y);
            std::memcpy(to, mirrored + byteOffset(rect.x()), 4 * count);
        });
}

QRect blockAt(const QRect& block, const QPointF& place) {
    // Far outside every image, near enough for whole numbers.
    constexpr double farAway = 1e6;
    const auto firstCentre = [farAway](double edge) {
        return static_cast<int>(std::clamp(std::ceil(edge - 0.5), -farAway, farAway));
    };
    return {QPoint(firstCentre(place.x()), firstCentre(place.y())), block.size()};
}

RasterImage imageWithBlockMoved(const RasterImage& image, const QRect& block,
                                const QPointF& place) {
    const QRect target = blockAt(block, place);
    const QPoint shift = target.topLeft() - block.topLeft();
    const QRect shown = target & QRect(0, 0, image.width(), image.height());
    RasterImage result = clearedImage(image, SelectionCoverage::ofPixels(block));
    if (result.isNull()) return result;
    for (int y = shown.y(); y < endY(shown); ++y)
        sourceOverPixels(result.mutableRow(y) + byteOffset(shown.x()),
                         image.row(y - shift.y()) + byteOffset(shown.x() - shift.x()),
                         pixelCount(shown), 255);
    return result;
}

} // namespace quillabrae::raster
