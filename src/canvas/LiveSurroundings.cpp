// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/LiveSurroundings.h"

#include "canvas/LayerPictures.h"
#include "raster/BlendKernels.h"
#include "raster/Parallel.h"
#include "raster/PixelMemory.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace quillabrae::canvas {
namespace {

constexpr int tileSide = 128;

using Layers = std::span<const model::PaintLayer>;
using Tiles = std::vector<QRect>;

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

/// Composes the pictures of a side into tiles of its composite, group over group.
void makeTiles(raster::RasterImage& composite, const DeviceView& view, const Tiles& tiles,
               LayerPictures& pictures, bool hasChecker) {
    // Detached once, here: the tiles are written from several threads.
    composite.mutableBytes();
    ComposerGround ground{.hasChecker = hasChecker};
    do {
        const std::vector<CanvasPicture> group = pictures.nextGroup();
        raster::parallelFor(static_cast<int>(tiles.size()), [&](int i) {
            const QRect& tile = tiles[static_cast<std::size_t>(i)];
            CanvasComposer(view, tile, group, ground)
                .composeInto(composite, tile.top(), tile.bottom() + 1);
        });
        ground.below = &composite;
    } while (!pictures.isAtEnd());
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
    m_key.reset();
    m_liveIndex = liveLayerIndex(frame);
    m_viewport = viewportDeviceRect(frame);
    const auto makeSurface = [this](raster::RasterImage& surface, Layers layers) {
        surface = {};
        if (isWorthKeeping(layers)) surface = uninitializedComposite(m_viewport);
    };
    makeSurface(m_below, layersBelow(frame, m_liveIndex));
    makeSurface(m_above, layersAbove(frame, m_liveIndex));
    const QRect tiles = tilesOf(m_viewport);
    m_tileColumns = static_cast<std::size_t>(tiles.width());
    m_isTileMade.assign(m_tileColumns * static_cast<std::size_t>(tiles.height()), 0);
    // Once all the rest is there: what has a key is gone on with.
    m_key = std::make_unique<Key>(
        Key{project.layers, project.floatingSelection, project.pixelSelection,
            QSizeF(project.canvasWidth, project.canvasHeight), frame.zoomScale, frame.canvasOrigin,
            frame.viewportSize, frame.devicePixelRatio});
}

void LiveSurroundings::prepare(const CanvasFrame& frame, const DeviceView& view,
                               const QRect& device, CoverageCache& coverage) {
    if (!isFor(frame)) startFor(frame);
    if (m_below.isNull() && m_above.isNull()) return;
    const Tiles missing = missingTiles(view, device);
    if (missing.empty()) return;
    const model::PaintProject& project = *frame.project;
    QRect bounds;
    for (const QRect& tile : missing) bounds |= tile;
    const raster::PixelRefusals refusals;
    const raster::DecodeCachePass pass;
    if (!m_below.isNull()) {
        LayerPictures below(project, layersBelow(frame, m_liveIndex), view, bounds, coverage);
        makeTiles(m_below, view, missing, below, true);
    }
    if (!m_above.isNull()) {
        LayerPictures above(project, layersAbove(frame, m_liveIndex), view, bounds, coverage);
        makeTiles(m_above, view, missing, above, false);
    }
    // A layer that there was no memory for is missing: the next frame makes these tiles again.
    if (!refusals.any()) countAsMade(device);
}

std::vector<QRect> LiveSurroundings::missingTiles(const DeviceView& view,
                                                  const QRect& device) const {
    Tiles missing;
    const QRect tiles = tilesOf(device);
    for (int row = tiles.top(); row <= tiles.bottom(); ++row) {
        for (int column = tiles.left(); column <= tiles.right(); ++column) {
            if (m_isTileMade[tileIndex(column, row)]) continue;
            const QRect tile(column * tileSide, row * tileSide, tileSide, tileSide);
            const QRect pixels = view.canvasPixels(tile & m_viewport);
            if (!pixels.isEmpty()) missing.push_back(pixels);
        }
    }
    return missing;
}

void LiveSurroundings::countAsMade(const QRect& device) {
    const QRect tiles = tilesOf(device);
    for (int row = tiles.top(); row <= tiles.bottom(); ++row)
        std::fill_n(&m_isTileMade[tileIndex(tiles.left(), row)], tiles.width(), 1);
}

ComposerGround LiveSurroundings::ground() const {
    return {.below = m_below.isNull() ? nullptr : &m_below,
            .above = m_above.isNull() ? nullptr : &m_above};
}

std::vector<CanvasPicture> LiveSurroundings::picturesBetween(const CanvasFrame& frame,
                                                             const DeviceView& view,
                                                             const QRect& device,
                                                             CoverageCache& coverage) const {
    const model::PaintProject& project = *frame.project;
    std::vector<CanvasPicture> pictures;
    const auto addSide = [&](Layers layers) {
        LayerPictures side(project, layers, view, device, coverage);
        while (!side.isAtEnd()) std::ranges::move(side.nextGroup(), std::back_inserter(pictures));
    };
    if (m_below.isNull()) addSide(layersBelow(frame, m_liveIndex));
    const model::PaintLayer& live = project.layers[m_liveIndex];
    if (live.isVisible)
        pictures.push_back({raster::CroppedImage(*frame.liveImage),
                            QRectF(0.0, 0.0, project.canvasWidth, project.canvasHeight),
                            raster::unitByte(live.opacity), nullptr});
    if (m_above.isNull()) addSide(layersAbove(frame, m_liveIndex));
    return pictures;
}

} // namespace quillabrae::canvas
