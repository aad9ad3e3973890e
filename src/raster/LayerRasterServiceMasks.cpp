// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterServiceMasks.h"

#include "raster/AlphaKernels.h"
#include "raster/AlphaMask.h"
#include "raster/EllipseCoverage.h"
#include "raster/PolygonCoverage.h"
#include "raster/SelectionGrid.h"
#include "raster/SurfaceSize.h"

#include <QSize>

#include <algorithm>
#include <cmath>
#include <limits>
#include <mutex>
#include <vector>

namespace quillabrae::raster::LayerRasterService {
namespace {

using model::PixelSelection;
using model::SelectionCombineOperation;

/// Two selections on one grid.
struct Combination {
    SelectionGrid first;
    SelectionGrid second;
    SelectionCombineOperation operation = SelectionCombineOperation::add;
    QSize size;

    /// `other` is room to work in, of the same size.
    void fillRow(int y, std::span<std::uint8_t> cells, std::span<std::uint8_t> other) const {
        first.fillRow(y, cells);
        second.fillRow(y, other);
        const auto combine = operation == SelectionCombineOperation::add ? addCells : subtractCells;
        combine(cells.data(), other.data(), cells.size());
    }
};

/// Cells from the first to the last, both included.
struct CellBounds {
    int left = std::numeric_limits<int>::max();
    int top = std::numeric_limits<int>::max();
    int right = -1;
    int bottom = -1;

    bool isEmpty() const { return right < left; }
    QSize size() const { return {right - left + 1, bottom - top + 1}; }

    void add(const CellBounds& other) {
        left = std::min(left, other.left);
        top = std::min(top, other.top);
        right = std::max(right, other.right);
        bottom = std::max(bottom, other.bottom);
    }

    void addRow(int y, std::span<const std::uint8_t> cells) {
        if (isAllZero(cells.data(), cells.size())) return;
        const auto isSelected = [](std::uint8_t cell) { return cell != 0; };
        const auto firstCell = std::ranges::find_if(cells, isSelected);
        const auto pastLast = std::find_if(cells.rbegin(), cells.rend(), isSelected).base();
        add({static_cast<int>(firstCell - cells.begin()), y,
             static_cast<int>(pastLast - cells.begin()) - 1, y});
    }
};

CellBounds selectedBounds(const Combination& combination) {
    constexpr int rowsAtOnce = 32;
    const auto width = static_cast<std::size_t>(combination.size.width());
    CellBounds bounds;
    std::mutex mutex;
    parallelForRowBands(combination.size.height(), rowsAtOnce, [&](int first, int last) {
        std::vector<std::uint8_t> cells(width);
        std::vector<std::uint8_t> other(width);
        CellBounds ofBand;
        for (int y = first; y < last; ++y) {
            combination.fillRow(y, cells, other);
            ofBand.addRow(y, cells);
        }
        const std::lock_guard lock(mutex);
        bounds.add(ofBand);
    });
    return bounds;
}

std::optional<model::PngBytes> combinedMask(const Combination& combination,
                                            const CellBounds& bounds) {
    const auto width = static_cast<std::size_t>(combination.size.width());
    return alphaMaskPNGData(bounds.size(), [&](int, int) {
        return
            [&, cells = std::vector<std::uint8_t>(width), other = std::vector<std::uint8_t>(width)](
                int y, std::span<std::uint8_t> alpha) mutable {
                combination.fillRow(bounds.top + y, cells, other);
                std::ranges::copy(
                    std::span(cells).subspan(static_cast<std::size_t>(bounds.left), alpha.size()),
                    alpha.begin());
            };
    });
}

bool isFinite(const model::CanvasPoint& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

} // namespace

std::optional<model::PngBytes> ellipseSelectionMask(double width, double height) {
    const std::optional<QSize> size = surfaceSize(width, height);
    if (!size) return std::nullopt;
    const EllipseCoverage ellipse(width, height);
    return alphaMaskPNGData(*size, [&](int, int) {
        return [&](int y, std::span<std::uint8_t> alpha) { ellipse.fillRow(y, alpha); };
    });
}

std::optional<model::PngBytes> lassoSelectionMask(std::span<const model::CanvasPoint> points,
                                                  const QRectF& bounds) {
    constexpr std::size_t fewestPoints = 3;
    if (points.size() < fewestPoints || !std::ranges::all_of(points, isFinite)) return std::nullopt;
    const QRectF rect = bounds.normalized();
    const std::optional<QSize> size = surfaceSize(rect.width(), rect.height());
    if (!size || !std::isfinite(rect.x()) || !std::isfinite(rect.y())) return std::nullopt;
    std::vector<model::CanvasPoint> corners;
    corners.reserve(points.size());
    for (const model::CanvasPoint& point : points)
        corners.push_back({point.x - rect.x(), point.y - rect.y()});
    const PolygonCoverage polygon(corners);
    return alphaMaskPNGData(*size, [&](int first, int last) {
        return [rows = PolygonCoverage::Rows(polygon, first, last)](
                   int y, std::span<std::uint8_t> alpha) mutable { rows.fillRow(y, alpha); };
    });
}

std::optional<PixelSelection> combinedSelection(const PixelSelection& first,
                                                const PixelSelection& second,
                                                SelectionCombineOperation operation) {
    const std::optional<QRectF> firstRect = integralRect(first);
    const std::optional<QRectF> secondRect = integralRect(second);
    if (!firstRect || !secondRect) return std::nullopt;
    QRectF target = *firstRect;
    if (operation == SelectionCombineOperation::add)
        target = QRectF(QPointF(std::min(firstRect->left(), secondRect->left()),
                                std::min(firstRect->top(), secondRect->top())),
                        QPointF(std::max(firstRect->right(), secondRect->right()),
                                std::max(firstRect->bottom(), secondRect->bottom())));
    if (!(target.width() >= 1.0 && target.width() <= maximumImageSide) ||
        !(target.height() >= 1.0 && target.height() <= maximumImageSide))
        return std::nullopt;

    const Combination combination{
        SelectionGrid(first, *firstRect, target.topLeft()),
        SelectionGrid(second, *secondRect, target.topLeft()), operation,
        QSize(static_cast<int>(target.width()), static_cast<int>(target.height()))};
    const CellBounds bounds = selectedBounds(combination);
    if (bounds.isEmpty()) return std::nullopt;
    return PixelSelection{target.x() + bounds.left, target.y() + bounds.top,
                          static_cast<double>(bounds.size().width()),
                          static_cast<double>(bounds.size().height()),
                          combinedMask(combination, bounds)};
}

} // namespace quillabrae::raster::LayerRasterService
