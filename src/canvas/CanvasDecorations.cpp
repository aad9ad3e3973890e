// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasDecorations.h"

#include "canvas/CanvasRenderer.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {
namespace {

constexpr double borderOpacity = 0.18;
/// A line of one canvas pixel along the edge, of which the canvas shows the inner half.
constexpr double borderWidth = 0.5;
/// Black at opacity 0.22.
constexpr std::uint8_t gridAlpha = 56;

/// The length that `low` to `high` share with the device pixel.
double overlap(int device, double low, double high) {
    return std::clamp(std::min(high, device + 1.0) - std::max(low, double(device)), 0.0, 1.0);
}

void markGridLines(const DeviceAxis& axis, int first, double canvasLength,
                   std::vector<std::uint8_t>& alpha) {
    const int count = static_cast<int>(alpha.size());
    const double lines = std::max(std::trunc(canvasLength), 1.0);
    const double from = std::max(std::floor(axis.canvasAt(first)) - 1.0, 0.0);
    const double to = std::min(std::ceil(axis.canvasAt(first + count)) + 1.0, lines);
    const double width = std::max(std::round(axis.devicePixelRatio), 1.0);
    for (double line = from; line <= to; ++line) {
        const double start = std::floor(axis.deviceAt(line) - width / 2.0 + 0.5) - first;
        const int begin = static_cast<int>(std::clamp(start, 0.0, double(count)));
        const int end = static_cast<int>(std::clamp(start + width, 0.0, double(count)));
        std::fill(alpha.begin() + begin, alpha.begin() + end, gridAlpha);
    }
}

} // namespace

CanvasDecorations::Axis CanvasDecorations::Axis::of(const DeviceAxis& axis, int first, int count,
                                                    double canvasLength, bool showsGrid) {
    Axis result;
    const double low = axis.deviceAt(0.0);
    const double high = axis.deviceAt(canvasLength);
    const double innerLow = axis.deviceAt(borderWidth);
    const double innerHigh = axis.deviceAt(canvasLength - borderWidth);
    for (int device = first; device < first + count; ++device) {
        result.onCanvas.push_back(static_cast<float>(overlap(device, low, high)));
        result.insideBorder.push_back(static_cast<float>(overlap(device, innerLow, innerHigh)));
    }
    const auto isWhole = [](float part) { return part == 1.0F; };
    const auto clearFirst = std::ranges::find_if(result.insideBorder, isWhole);
    const auto clearEnd = std::find_if_not(clearFirst, result.insideBorder.end(), isWhole);
    result.clearFirst = static_cast<int>(clearFirst - result.insideBorder.begin());
    result.clearEnd = static_cast<int>(clearEnd - result.insideBorder.begin());
    if (!showsGrid) return result;
    result.gridAlpha.resize(static_cast<std::size_t>(count));
    markGridLines(axis, first, canvasLength, result.gridAlpha);
    return result;
}

CanvasDecorations::CanvasDecorations(const CanvasFrame& frame, const DeviceView& view,
                                     const QRect& device)
    : m_device(device),
      m_columns(Axis::of(view.x, device.left(), device.width(), view.canvasWidth,
                         shouldDrawPixelGrid(frame))),
      m_rows(Axis::of(view.y, device.top(), device.height(), view.canvasHeight,
                      shouldDrawPixelGrid(frame))),
      m_showsGrid(shouldDrawPixelGrid(frame)) {
    const QColor color = frame.secondaryLabelColor;
    // Rows are in the order B, G, R, A.
    m_borderColor = {static_cast<std::uint8_t>(color.blue()),
                     static_cast<std::uint8_t>(color.green()),
                     static_cast<std::uint8_t>(color.red()), 255};
    m_borderAlpha = static_cast<float>(color.alpha() * borderOpacity);
}

void CanvasDecorations::paintRow(int y, std::uint8_t* row) const {
    const int index = y - m_device.top();
    if (m_rows.isClear(index) && m_columns.clearFirst < m_columns.clearEnd) {
        paintBorder(index, 0, m_columns.clearFirst, row);
        paintBorder(index, m_columns.clearEnd, m_device.width(), row);
    } else {
        paintBorder(index, 0, m_device.width(), row);
    }
    if (m_showsGrid) paintGrid(index, row);
}

void CanvasDecorations::paintBorder(int index, int first, int end, std::uint8_t* row) const {
    if (first >= end) return;
    const auto y = static_cast<std::size_t>(index);
    std::vector<std::uint8_t> alpha;
    alpha.reserve(static_cast<std::size_t>(end - first));
    for (auto x = static_cast<std::size_t>(first); x < static_cast<std::size_t>(end); ++x) {
        const float part = m_columns.onCanvas[x] * m_rows.onCanvas[y] -
                           m_columns.insideBorder[x] * m_rows.insideBorder[y];
        alpha.push_back(
            static_cast<std::uint8_t>(std::lround(std::max(part, 0.0F) * m_borderAlpha)));
    }
    raster::sourceOverColor(row + 4 * static_cast<std::size_t>(first), alpha.data(), alpha.size(),
                            m_borderColor);
}

void CanvasDecorations::paintGrid(int index, std::uint8_t* row) const {
    const auto width = static_cast<std::size_t>(m_device.width());
    if (m_rows.gridAlpha[static_cast<std::size_t>(index)] != 0) {
        raster::sourceOverColor(row, width, {0, 0, 0, gridAlpha});
    } else {
        raster::sourceOverColor(row, m_columns.gridAlpha.data(), width, {0, 0, 0, 0});
    }
}

} // namespace quillabrae::canvas
