// SPDX-License-Identifier: GPL-3.0-or-later
// The least rectangle that holds every pixel of alpha above 0.
#include "raster/KernelTargets.h"
#include "raster/LayerPixels.h"
#include "raster/Parallel.h"
#include "raster/RowBands.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <mutex>

namespace quillabrae::raster {
namespace {

constexpr std::size_t stretch = 64;

bool isVisible(const std::uint8_t* pixels, std::size_t index) {
    return pixels[4 * index + 3] != 0;
}

QUILLABRAE_WIDE_KERNEL
bool isAnyVisible(const std::uint8_t* pixels, std::size_t pixelCount) {
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, pixels + 4 * i, 4);
        all |= pixel;
    }
    return (all >> 24) != 0;
}

/// The first visible pixel of the run, or its length.
std::size_t firstVisible(const std::uint8_t* pixels, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; i += stretch) {
        const std::size_t end = std::min(i + stretch, pixelCount);
        if (!isAnyVisible(pixels + 4 * i, end - i)) continue;
        while (!isVisible(pixels, i)) ++i;
        return i;
    }
    return pixelCount;
}

/// One past the last visible pixel of the run, or 0.
std::size_t endOfVisible(const std::uint8_t* pixels, std::size_t pixelCount) {
    for (std::size_t end = pixelCount; end > 0;) {
        const std::size_t start = end > stretch ? end - stretch : 0;
        if (!isAnyVisible(pixels + 4 * start, end - start)) {
            end = start;
            continue;
        }
        while (!isVisible(pixels, end - 1)) --end;
        return end;
    }
    return 0;
}

/// Columns and rows that hold visible pixels, each from the first up to but not including the end.
struct Bounds {
    std::size_t left = std::numeric_limits<std::size_t>::max();
    std::size_t right = 0;
    int top = 0;
    int bottom = 0;

    bool isEmpty() const { return bottom <= top; }

    void add(const std::uint8_t* row, std::size_t pixelCount, int y) {
        const std::size_t first = firstVisible(row, pixelCount);
        if (first == pixelCount) return;
        left = std::min(left, first);
        right = std::max(right, right + endOfVisible(row + 4 * right, pixelCount - right));
        if (isEmpty()) top = y;
        bottom = y + 1;
    }

    void unite(const Bounds& other) {
        if (other.isEmpty()) return;
        if (isEmpty()) {
            *this = other;
            return;
        }
        left = std::min(left, other.left);
        right = std::max(right, other.right);
        top = std::min(top, other.top);
        bottom = std::max(bottom, other.bottom);
    }
};

/// The whole positions p below `count` with low <= p and p + 1 <= high.
struct WholePositions {
    int first;
    int end;

    WholePositions(double low, double high, int count)
        : first(static_cast<int>(std::clamp(std::ceil(low), 0.0, double(count)))),
          end(static_cast<int>(std::clamp(std::floor(high), 0.0, double(count)))) {}
};

} // namespace

std::optional<QRect> opaqueBounds(const RasterImage& image, const QRectF& target) {
    if (!std::isfinite(target.x() + target.width()) || !std::isfinite(target.y() + target.height()))
        return std::nullopt;
    const QRectF rect = target.normalized();
    const WholePositions columns(rect.x(), rect.x() + rect.width(), image.width());
    const WholePositions rows(rect.y(), rect.y() + rect.height(), image.height());
    if (columns.first >= columns.end || rows.first >= rows.end) return std::nullopt;
    const auto width = static_cast<std::size_t>(columns.end - columns.first);
    Bounds bounds;
    std::mutex mutex;
    parallelForRowBands(
        rows.end - rows.first, rowsPerBand(image.width()), [&](int first, int last) {
            Bounds band;
            for (int y = rows.first + first; y < rows.first + last; ++y)
                band.add(image.row(y) + 4 * static_cast<std::size_t>(columns.first), width, y);
            const std::lock_guard lock(mutex);
            bounds.unite(band);
        });
    if (bounds.isEmpty()) return std::nullopt;
    return QRect(columns.first + static_cast<int>(bounds.left), bounds.top,
                 static_cast<int>(bounds.right - bounds.left), bounds.bottom - bounds.top);
}

} // namespace quillabrae::raster
