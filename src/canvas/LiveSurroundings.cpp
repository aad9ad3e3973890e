// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/LiveSurroundings.h"

#include "raster/BlendKernels.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace quillabrae::canvas {
namespace {

constexpr int tileSide = 128;

using Layers = std::span<const model::PaintLayer>;

Layers layersBelow(const CanvasFrame& frame, std::size_t live) {
    return Layers(frame.project->layers).first(live);
}

Layers layersAbove(const CanvasFrame& frame, std::size_t live) {
    return Layers(frame.project->layers).subspan(live + 1);
}

bool isWorthKeeping(Layers layers) {
    return std::ranges::count_if(layers, [](const model::PaintLayer& layer) {
               return layer.isVisible && layer.bitmapPNGData;
           }) > 1;
}

/// The tiles that meet `pixels`, as first and last column and row.
QRect tilesOf(const QRect& pixels) {
    return QRect(QPoint(pixels.left() / tileSide, pixels.top() / tileSide),
                 QPoint(pixels.right() / tileSide, pixels.bottom() / tileSide));
}

} // namespace

/// Everything that the composites depend on.
struct LiveSurroundings::Key {
    std::vector<model::PaintLayer> layers;
    std::optional<model::FloatingPixelSelection> floatingSelection;
    std::optional<model::PixelSelection> pixelSelection;
    QSizeF canvasSize;
    double zoomScale;
    QPointF canvasOrigin;
    QSizeF viewportSize;
    double devicePixelRatio;
};

LiveSurroundings::LiveSurroundings() = default;
LiveSurroundings::~LiveSurroundings() = default;

std::size_t liveLayerIndex(const CanvasFrame& frame) {
    const std::vector<model::PaintLayer>& layers = frame.project->layers;
    if (!frame.liveLayerID || frame.liveImage == nullptr || frame.liveImage->isNull())
        return layers.size();
    const auto found = std::ranges::find(layers, *frame.liveLayerID, &model::PaintLayer::id);
    return static_cast<std::size_t>(found - layers.begin());
}

bool LiveSurroundings::isFor(const CanvasFrame& frame) const {
    const model::PaintProject& project = *frame.project;
    return m_key && m_liveIndex == liveLayerIndex(frame) && m_key->layers == project.layers &&
           m_key->floatingSelection == project.floatingSelection &&
           (!project.floatingSelection || m_key->pixelSelection == project.pixelSelection) &&
           m_key->canvasSize == QSizeF(project.canvasWidth, project.canvasHeight) &&
           m_key->zoomScale == frame.zoomScale && m_key->canvasOrigin == frame.canvasOrigin &&
           m_key->viewportSize == frame.viewportSize &&
           m_key->devicePixelRatio == frame.devicePixelRatio;
}

void LiveSurroundings::startFor(const CanvasFrame& frame) {
    const model::PaintProject& project = *frame.project;
    m_key = std::make_unique<Key>(
        Key{project.layers, project.floatingSelection, project.pixelSelection,
            QSizeF(project.canvasWidth, project.canvasHeight), frame.zoomScale, frame.canvasOrigin,
            frame.viewportSize, frame.devicePixelRatio});
    m_liveIndex = liveLayerIndex(frame);
    m_viewport = viewportDeviceRect(frame);
    const auto surfaceFor = [this](Layers layers) {
        return isWorthKeeping(layers)
                   ? raster::RasterImage::uninitialized(m_viewport.width(), m_viewport.height())
                   : raster::RasterImage();
    };
    m_below = surfaceFor(layersBelow(frame, m_liveIndex));
    m_above = surfaceFor(layersAbove(frame, m_liveIndex));
    const QRect tiles = tilesOf(m_viewport);
    m_tileColumns = static_cast<std::size_t>(tiles.width());
    m_isTileMade.assign(m_tileColumns * static_cast<std::size_t>(tiles.height()), 0);
}

void LiveSurroundings::prepare(const CanvasFrame& frame, const DeviceView& view,
                               const QRect& device, CoverageCache& coverage) {
    if (!isFor(frame)) startFor(frame);
    if (m_below.isNull() && m_above.isNull()) return;
    std::vector<QRect> missing;
    const QRect tiles = tilesOf(device);
    for (int row = tiles.top(); row <= tiles.bottom(); ++row) {
        for (int column = tiles.left(); column <= tiles.right(); ++column) {
            unsigned char& isMade = m_isTileMade[static_cast<std::size_t>(row) * m_tileColumns +
                                                 static_cast<std::size_t>(column)];
            if (isMade) continue;
            isMade = 1;
            const QRect tile(column * tileSide, row * tileSide, tileSide, tileSide);
            missing.push_back(view.canvasPixels(tile & m_viewport));
        }
    }
    if (missing.empty()) return;
    std::vector<CanvasPicture> below;
    std::vector<CanvasPicture> above;
    if (!m_below.isNull())
        below = picturesOf(*frame.project, layersBelow(frame, m_liveIndex), coverage);
    if (!m_above.isNull())
        above = picturesOf(*frame.project, layersAbove(frame, m_liveIndex), coverage);
    // Detached once, here: the tiles are written from several threads.
    m_below.mutableBytes();
    m_above.mutableBytes();
    raster::parallelFor(static_cast<int>(missing.size()), [&](int i) {
        makeTile(view, missing[static_cast<std::size_t>(i)], below, above);
    });
}

void LiveSurroundings::makeTile(const DeviceView& view, const QRect& tile,
                                const std::vector<CanvasPicture>& below,
                                const std::vector<CanvasPicture>& above) {
    if (tile.isEmpty()) return;
    const auto make = [&](raster::RasterImage& image, const std::vector<CanvasPicture>& pictures,
                          bool hasChecker) {
        if (image.isNull()) return;
        const CanvasComposer composer(view, tile, pictures, {.hasChecker = hasChecker});
        CanvasComposer::RowBuffer buffer;
        for (int y = tile.top(); y <= tile.bottom(); ++y)
            std::memcpy(image.mutableRow(y) + 4 * static_cast<std::size_t>(tile.left()),
                        composer.composeRow(y, buffer), 4 * static_cast<std::size_t>(tile.width()));
    };
    make(m_below, below, true);
    make(m_above, above, false);
}

ComposerGround LiveSurroundings::ground() const {
    return {.below = m_below.isNull() ? nullptr : &m_below,
            .above = m_above.isNull() ? nullptr : &m_above};
}

std::vector<CanvasPicture> LiveSurroundings::picturesBetween(const CanvasFrame& frame,
                                                             CoverageCache& coverage) const {
    const model::PaintProject& project = *frame.project;
    std::vector<CanvasPicture> pictures;
    if (m_below.isNull()) pictures = picturesOf(project, layersBelow(frame, m_liveIndex), coverage);
    const model::PaintLayer& live = project.layers[m_liveIndex];
    if (live.isVisible)
        pictures.push_back({*frame.liveImage,
                            QRectF(0.0, 0.0, project.canvasWidth, project.canvasHeight),
                            raster::unitByte(live.opacity), nullptr});
    if (m_above.isNull()) {
        for (CanvasPicture& picture :
             picturesOf(project, layersAbove(frame, m_liveIndex), coverage))
            pictures.push_back(std::move(picture));
    }
    return pictures;
}

} // namespace quillabrae::canvas
