// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasComposer.h"

#include "raster/BlendKernels.h"
#include "raster/CroppedDrawing.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

namespace quillabrae::canvas {
namespace {

constexpr double checkerCell = 22.0;
constexpr std::uint8_t white = 255;
/// Gray at opacity 0.28 over white.
constexpr std::uint8_t shaded = 219;

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

raster::RasterImage uninitializedComposite(const QRect& viewport) {
    raster::RasterImage composite =
        raster::RasterImage::uninitialized(viewport.width(), viewport.height());
    if (composite.isNull()) throw std::bad_alloc();
    return composite;
}

CanvasComposer::CanvasComposer(const DeviceView& view, const QRect& device,
                               std::vector<CanvasPicture> pictures, const ComposerGround& ground)
    : m_device(device), m_y(view.y), m_ground(ground) {
    AxisTable<raster::AxisSamples> wholeColumns;
    AxisTable<raster::AxisSamples> wholeRows;
    for (CanvasPicture& picture : pictures) {
        if (picture.fraction == 0) continue;
        const QRectF& target = picture.target;
        const QRect part = picture.pixels.part();
        const QSize whole = picture.pixels.wholeSize;
        const AxisKey across{target.x(), target.width(), whole.width(), part.left(), part.width()};
        const AxisKey down{target.y(), target.height(), whole.height(), part.top(), part.height()};
        const auto axisSamples = [](auto& wholes, const DeviceAxis& axis, int first, int count,
                                    const AxisKey& key) {
            const std::size_t index = tableIndex(wholes, key.ofWhole(), [&] {
                return axis.samples(first, first + count, key.low, key.length, key.sourceCount);
            });
            return raster::samplesWithin(wholes[index].second, key.first, key.count);
        };
        const std::size_t columns = tableIndex(m_columns, across, [&] {
            auto samples = axisSamples(wholeColumns, view.x, device.left(), device.width(), across);
            const raster::RowGather gather(samples.source, across.count);
            return Columns{std::move(samples), gather};
        });
        const std::size_t rows = tableIndex(m_rows, down, [&] {
            return axisSamples(wholeRows, view.y, device.top(), device.height(), down);
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
        std::memcpy(row, m_ground.below->row(y) + deviceOffset(), byteCount);
    } else if (m_ground.hasChecker) {
        std::memcpy(row, m_checker[static_cast<std::size_t>(checkerRow(y))].data(), byteCount);
    } else {
        std::memset(row, 0, byteCount);
    }
}

void CanvasComposer::updateRuns(const Item& item, int source, ItemRuns& runs) const {
    constexpr int tileSide = PictureCoverage::tileSide;
    const int tileRow = source / tileSide;
    if (runs.tileRow == tileRow) return;
    const raster::AxisSamples& columns = m_columns[item.columns].second.samples;
    const std::size_t count = columns.source.size();
    runs = {tileRow, {}, false};
    if (!item.picture.coverage) {
        runs.runs.push_back({0, count});
        return;
    }
    bool isOpaque = item.picture.fraction == 255 && columns.first == m_device.left() &&
                    count == static_cast<std::size_t>(m_device.width());
    for (std::size_t i = 0; i < count;) {
        const int tileColumn = columns.source[i] / tileSide;
        const auto next = std::lower_bound(columns.source.begin() + static_cast<std::ptrdiff_t>(i),
                                           columns.source.end(), (tileColumn + 1) * tileSide);
        const auto end = static_cast<std::size_t>(next - columns.source.begin());
        const auto tile =
            item.picture.coverage->tile(item.picture.pixels.image, tileColumn, tileRow);
        if (tile != PictureCoverage::Tile::opaque) isOpaque = false;
        if (tile != PictureCoverage::Tile::empty) {
            if (!runs.runs.empty() && runs.runs.back().end == i) {
                runs.runs.back().end = end;
            } else {
                runs.runs.push_back({i, end});
            }
        }
        i = end;
    }
    runs.isOpaque = isOpaque && count != 0;
}

void CanvasComposer::drawItem(const Item& item, int y, int source, RowBuffer& buffer,
                              const ItemRuns& runs) const {
    const auto& [columns, gather] = m_columns[item.columns].second;
    const bool isShift = columns.isShift();
    const std::uint8_t* const row = item.picture.pixels.image.row(source);
    const int nextSource = sourceRow(item, y + 1);
    const std::uint8_t* const next =
        nextSource < 0 ? row : item.picture.pixels.image.row(nextSource);
    std::uint8_t* const target =
        buffer.pixels.data() + 4 * static_cast<std::size_t>(columns.first - m_device.left());
    if (runs.isOpaque && !isShift)
        return gather.gatherPart(row, target, 0, columns.source.size(), next);
    for (const Run& run : runs.runs) {
        const std::uint8_t* pixels = buffer.gathered.data() + 4 * run.first;
        if (isShift)
            pixels = row + 4 * static_cast<std::size_t>(columns.source[run.first]);
        else
            gather.gatherPart(row, buffer.gathered.data(), run.first, run.end, next);
        raster::sourceOverPixels(target + 4 * run.first, pixels, run.end - run.first,
                                 item.picture.fraction);
    }
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
    buffer.itemRuns.resize(m_items.size());
    // From the top down to the first picture that hides the others.
    std::size_t lowest = m_items.size();
    bool isHidingAll = false;
    while (lowest > 0 && !isHidingAll) {
        --lowest;
        if (sourceRows[lowest] < 0) continue;
        updateRuns(m_items[lowest], sourceRows[lowest], buffer.itemRuns[lowest]);
        isHidingAll = buffer.itemRuns[lowest].isOpaque;
    }
    if (!isHidingAll) startRow(y, buffer.pixels.data());
    for (std::size_t i = lowest; i < m_items.size(); ++i) {
        if (sourceRows[i] >= 0) drawItem(m_items[i], y, sourceRows[i], buffer, buffer.itemRuns[i]);
    }
    if (m_ground.above)
        raster::sourceOverPixels(buffer.pixels.data(), m_ground.above->row(y) + deviceOffset(),
                                 static_cast<std::size_t>(m_device.width()), 255);
    buffer.sourceRows = std::move(sourceRows);
    return buffer.pixels.data();
}

void CanvasComposer::composeInto(raster::RasterImage& viewport, int first, int end) const {
    RowBuffer buffer;
    for (int y = first; y < end; ++y)
        std::memcpy(viewport.mutableRow(y) + deviceOffset(), composeRow(y, buffer),
                    4 * static_cast<std::size_t>(m_device.width()));
}

} // namespace quillabrae::canvas
