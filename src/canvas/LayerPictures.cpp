// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/LayerPictures.h"

#include "canvas/SelectionHandle.h"
#include "model/WholePixelRect.h"
#include "raster/BlendKernels.h"
#include "raster/Stretch.h"

#include <algorithm>
#include <utility>

namespace quillabrae::canvas {

LayerPictures::LayerPictures(const model::PaintProject& project,
                             std::span<const model::PaintLayer> layers, const DeviceView& view,
                             const QRect& device, CoverageCache& coverage)
    : m_view(view), m_device(device), m_coverage(coverage) {
    m_coverage.forgetDead();
    const QRectF canvas(0.0, 0.0, project.canvasWidth, project.canvasHeight);
    const auto& floating = project.floatingSelection;
    for (const model::PaintLayer& layer : layers) {
        const std::uint8_t fraction = raster::unitByte(layer.opacity);
        if (!layer.isVisible || fraction == 0) continue;
        if (layer.bitmapPNGData) m_sources.push_back({*layer.bitmapPNGData, canvas, fraction});
        if (floating && floating->layerID == layer.id && project.pixelSelection)
            m_sources.push_back({floating->pngData,
                                 model::wholePixelRect(rectOf(*project.pixelSelection)), fraction});
    }
    readTop();
}

void LayerPictures::readTop() {
    Group top;
    while (!m_sources.empty() && top.hasRoom()) {
        const Source source = m_sources.back();
        m_sources.pop_back();
        if (readInto(top, source) && !m_sources.empty() && hidesAll(top.pictures.back()))
            m_sources.clear();
    }
    std::ranges::reverse(top.pictures);
    m_top = std::move(top.pictures);
}

std::vector<CanvasPicture> LayerPictures::nextGroup() {
    Group group;
    while (m_next < m_sources.size() && group.hasRoom()) readInto(group, m_sources[m_next++]);
    if (!group.pictures.empty()) return std::move(group.pictures);
    m_isTopTaken = true;
    return std::move(m_top);
}

bool LayerPictures::readInto(Group& group, const Source& source) {
    std::optional<CanvasPicture> picture = pictureOf(source);
    if (!picture) return false;
    if (!raster::isRemembered(source.bytes)) group.heldBytes += picture->pixels.image.byteCount();
    group.pictures.push_back(std::move(*picture));
    return true;
}

std::optional<CanvasPicture> LayerPictures::pictureOf(const Source& source) {
    const auto isSeen = [&](const QRect& part, QSize wholeSize) {
        return windowOf(source.target, wholeSize).pixels.intersects(part);
    };
    const auto bounds = m_coverage.boundsOf(source.bytes);
    if (bounds && !isSeen(bounds->part, bounds->wholeSize)) return std::nullopt;
    raster::CroppedImage pixels = raster::decodedCrop(source.bytes);
    if (pixels.isNull()) return std::nullopt;
    auto coverage = m_coverage.coverageOf(source.bytes, pixels);
    if (!isSeen(pixels.part(), pixels.wholeSize)) return std::nullopt;
    return CanvasPicture{std::move(pixels), source.target, source.fraction, std::move(coverage)};
}

const LayerPictures::Window& LayerPictures::windowOf(const QRectF& target, QSize wholeSize) {
    const auto known = std::ranges::find_if(m_windows, [&](const Window& window) {
        return window.target == target && window.wholeSize == wholeSize;
    });
    if (known != m_windows.end()) return *known;
    const raster::AxisSamples columns =
        m_view.x.samples(m_device.left(), m_device.left() + m_device.width(), target.x(),
                         target.width(), wholeSize.width());
    const raster::AxisSamples rows =
        m_view.y.samples(m_device.top(), m_device.top() + m_device.height(), target.y(),
                         target.height(), wholeSize.height());
    Window window{target, wholeSize, QRect(), false};
    if (!columns.isEmpty() && !rows.isEmpty()) {
        window.pixels = QRect(QPoint(columns.source.front(), rows.source.front()),
                              QPoint(columns.source.back(), rows.source.back()));
        window.isEverywhere = columns.source.size() == static_cast<std::size_t>(m_device.width()) &&
                              rows.source.size() == static_cast<std::size_t>(m_device.height());
    }
    return m_windows.emplace_back(window);
}

bool LayerPictures::hidesAll(const CanvasPicture& picture) {
    const Window& window = windowOf(picture.target, picture.pixels.wholeSize);
    if (picture.fraction != 255 || !window.isEverywhere ||
        !picture.pixels.part().contains(window.pixels))
        return false;
    constexpr int side = PictureCoverage::tileSide;
    const QRect pixels = window.pixels.translated(-picture.pixels.origin);
    return picture.coverage->isOpaque(picture.pixels.image,
                                      QRect(QPoint(pixels.left() / side, pixels.top() / side),
                                            QPoint(pixels.right() / side, pixels.bottom() / side)));
}

std::size_t LayerPictures::groupBudget() {
    return raster::decodeCacheBudget() / 4;
}

} // namespace quillabrae::canvas
