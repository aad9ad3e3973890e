// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasComposer.h"

#include "raster/BlendKernels.h"
#include "raster/DecodeCache.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillabrae::canvas {
namespace {

constexpr double checkerCell = 22.0;
constexpr std::uint8_t white = 255;
/// Gray at opacity 0.28 over white.
constexpr std::uint8_t shaded = 219;

/// Where floating pixels stand: whole canvas pixels, as they are put down.
QRectF floatingTarget(const model::PixelSelection& selection) {
    const QRectF rect =
        QRectF(selection.x, selection.y, selection.width, selection.height).normalized();
    return {std::trunc(rect.x()), std::trunc(rect.y()), std::max(std::trunc(rect.width()), 1.0),
            std::max(std::trunc(rect.height()), 1.0)};
}

std::size_t tableIndex(auto& table, const auto& key, auto makeSamples) {
    const auto found =
        std::ranges::find_if(table, [&](const auto& entry) { return entry.first == key; });
    if (found != table.end()) return static_cast<std::size_t>(found - table.begin());
    table.emplace_back(key, makeSamples());
    return table.size() - 1;
}

bool isShaded(double across, int checkerRow) {
    const auto column = static_cast<std::int64_t>(std::floor(across / checkerCell));
    return (column + checkerRow) % 2 == 0;
}

} // namespace

std::vector<CanvasPicture> picturesOf(const model::PaintProject& project,
                                      std::span<const model::PaintLayer> layers) {
    const QRectF canvas(0.0, 0.0, project.canvasWidth, project.canvasHeight);
    std::vector<CanvasPicture> pictures;
    const auto add = [&](const model::PngBytes& bytes, const QRectF& target, double opacity) {
        raster::RasterImage image = raster::decodedImage(bytes);
        if (image.isNull()) return;
        pictures.push_back({std::move(image), target, raster::unitByte(opacity)});
    };
    for (const model::PaintLayer& layer : layers) {
        if (!layer.isVisible) continue;
        if (layer.bitmapPNGData) add(*layer.bitmapPNGData, canvas, layer.opacity);
        const auto& floating = project.floatingSelection;
        if (floating && floating->layerID == layer.id && project.pixelSelection)
            add(floating->pngData, floatingTarget(*project.pixelSelection), layer.opacity);
    }
    return pictures;
}

CanvasComposer::CanvasComposer(const DeviceView& view, const QRect& device,
                               std::vector<CanvasPicture> pictures, const ComposerGround& ground)
    : m_device(device), m_y(view.y), m_ground(ground) {
    for (CanvasPicture& picture : pictures) {
        if (picture.fraction == 0) continue;
        const QRectF& target = picture.target;
        const AxisKey across{target.x(), target.width(), picture.image.width()};
        const AxisKey down{target.y(), target.height(), picture.image.height()};
        const std::size_t columns = tableIndex(m_columns, across, [&] {
            return view.x.samples(device.left(), device.left() + device.width(), across.low,
                                  across.length, across.sourceCount);
        });
        const std::size_t rows = tableIndex(m_rows, down, [&] {
            return view.y.samples(device.top(), device.top() + device.height(), down.low,
                                  down.length, down.sourceCount);
        });
        m_items.push_back({std::move(picture), columns, rows});
    }
    if (!m_ground.below && m_ground.hasChecker) makeChecker(view);
}

void CanvasComposer::makeChecker(const DeviceView& view) {
    for (int row = 0; row < 2; ++row) {
        std::vector<std::uint8_t>& pixels = m_checker[static_cast<std::size_t>(row)];
        pixels.reserve(4 * static_cast<std::size_t>(m_device.width()));
        for (int i = 0; i < m_device.width(); ++i) {
            const bool shades = isShaded(view.x.pointsAt(m_device.left() + i), row);
            const std::uint8_t gray = shades ? shaded : white;
            pixels.insert(pixels.end(), {gray, gray, gray, white});
        }
    }
}

int CanvasComposer::checkerRow(int y) const {
    const auto row = static_cast<std::int64_t>(std::floor(m_y.pointsAt(y) / checkerCell));
    return static_cast<int>(row % 2);
}

int CanvasComposer::sourceRow(const Item& item, int y) const {
    const raster::AxisSamples& rows = m_rows[item.rows].second;
    if (y < rows.first || y >= rows.end()) return -1;
    return rows.source[static_cast<std::size_t>(y - rows.first)];
}

void CanvasComposer::startRow(int y, std::uint8_t* row) const {
    const std::size_t byteCount = 4 * static_cast<std::size_t>(m_device.width());
    if (m_ground.below) {
        std::memcpy(row, m_ground.below->row(y) + 4 * m_device.left(), byteCount);
    } else if (m_ground.hasChecker) {
        std::memcpy(row, m_checker[static_cast<std::size_t>(checkerRow(y))].data(), byteCount);
    } else {
        std::memset(row, 0, byteCount);
    }
}

void CanvasComposer::drawItem(const Item& item, int source, RowBuffer& buffer) const {
    const raster::AxisSamples& columns = m_columns[item.columns].second;
    if (source < 0 || columns.isEmpty()) return;
    const std::size_t count = columns.source.size();
    const std::uint8_t* pixels = item.picture.image.row(source);
    if (columns.isShift()) {
        pixels += 4 * static_cast<std::size_t>(columns.source.front());
    } else {
        raster::gatherPixels(buffer.gathered.data(), pixels, columns.source.data(), count);
        pixels = buffer.gathered.data();
    }
    raster::sourceOverPixels(
        buffer.pixels.data() + 4 * static_cast<std::size_t>(columns.first - m_device.left()),
        pixels, count, item.picture.fraction);
}

const std::uint8_t* CanvasComposer::composeRow(int y, RowBuffer& buffer) const {
    const bool isGrounded = m_ground.below || m_ground.above;
    // One number for each source row, and one for the checker's.
    std::vector<int> sourceRows;
    sourceRows.reserve(m_items.size() + 1);
    for (const Item& item : m_items) sourceRows.push_back(sourceRow(item, y));
    sourceRows.push_back(m_ground.hasChecker ? checkerRow(y) : 0);
    if (!isGrounded && sourceRows == buffer.sourceRows) return buffer.pixels.data();

    const std::size_t byteCount = 4 * static_cast<std::size_t>(m_device.width());
    buffer.pixels.resize(byteCount);
    buffer.gathered.resize(byteCount);
    startRow(y, buffer.pixels.data());
    for (std::size_t i = 0; i < m_items.size(); ++i) drawItem(m_items[i], sourceRows[i], buffer);
    if (m_ground.above)
        raster::sourceOverPixels(buffer.pixels.data(), m_ground.above->row(y) + 4 * m_device.left(),
                                 static_cast<std::size_t>(m_device.width()), 255);
    buffer.sourceRows = std::move(sourceRows);
    return buffer.pixels.data();
}

} // namespace quillabrae::canvas
