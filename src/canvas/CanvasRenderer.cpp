// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasRenderer.h"

#include "canvas/CanvasComposer.h"
#include "canvas/CanvasDecorations.h"
#include "canvas/DeviceView.h"
#include "canvas/LayerPictures.h"
#include "canvas/LiveSurroundings.h"
#include "canvas/PictureCoverage.h"
#include "raster/BlendKernels.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <new>
#include <utility>
#include <vector>

namespace quillabrae::canvas {
namespace {

/// Work for one thread that is worth waking another for.
constexpr int pixelsPerBand = 1 << 15;
/// A strip of the viewport stays in the processor's cache on its way to the window.
constexpr int stripRows = 128;
constexpr double maximumGridPixels = 240.0;

QRect alignedRect(const QRectF& rect) {
    const double limit = 1 << 24;
    const auto held = [&](double value) {
        return static_cast<int>(std::clamp(value, -limit, limit));
    };
    const QPoint first(held(std::floor(rect.left())), held(std::floor(rect.top())));
    const QPoint end(held(std::ceil(rect.right())), held(std::ceil(rect.bottom())));
    return QRect(first, end - QPoint(1, 1));
}

QRectF scaled(const QRectF& rect, double factor) {
    return {rect.topLeft() * factor, rect.size() * factor};
}

} // namespace

/// A paint in hand: what it composes and draws, of the device pixels `device`.
class CanvasRenderer::Job {
public:
    Job(const CanvasFrame& frame, LiveSurroundings* surroundings, CoverageCache& coverage,
        const QRect& dirty)
        : m_view(DeviceView::of(frame)), m_device(m_view.canvasPixels(dirty)) {
        if (m_device.isEmpty()) return;
        compose(frame, surroundings, coverage);
        m_decorations.emplace(frame, m_view, m_device);
    }

    /// Empty when there is nothing to draw.
    const QRect& device() const { return m_device; }

    /// Draws the rows `first` to `end` - 1 into `target`, whose pixel (0, 0) is device pixel
    /// `origin`.
    void drawRows(QImage& target, QPoint origin, int first, int end) const {
        std::uint8_t* const bits = target.bits();
        const auto stride = static_cast<std::size_t>(target.bytesPerLine());
        inRowBands(first, end, [&](int from, int to) {
            CanvasComposer::RowBuffer buffer;
            for (int y = from; y < to; ++y) {
                std::uint8_t* const row =
                    bits + static_cast<std::size_t>(y - origin.y()) * stride +
                    4 * static_cast<std::size_t>(m_device.left() - origin.x());
                raster::swapRedAndBlue(m_composer->composeRow(y, buffer), row,
                                       static_cast<std::size_t>(m_device.width()));
                m_decorations->paintRow(y, row);
            }
        });
    }

private:
    void compose(const CanvasFrame& frame, LiveSurroundings* surroundings,
                 CoverageCache& coverage) {
        if (surroundings == nullptr) {
            LayerPictures pictures(*frame.project, frame.project->layers, m_view, m_device,
                                   coverage);
            composeGroups(frame, pictures);
            return;
        }
        surroundings->prepare(frame, m_view, m_device, coverage);
        m_composer.emplace(m_view, m_device,
                           surroundings->picturesBetween(frame, m_view, m_device, coverage),
                           surroundings->ground());
    }

    /// Composes every group of the pictures but the last, and leaves that to the drawing.
    void composeGroups(const CanvasFrame& frame, LayerPictures& pictures) {
        ComposerGround ground;
        std::vector<CanvasPicture> group = pictures.nextGroup();
        while (!pictures.isAtEnd()) {
            if (m_ground.isNull()) m_ground = uninitializedComposite(viewportDeviceRect(frame));
            const CanvasComposer composer(m_view, m_device, std::move(group), ground);
            inRowBands(m_device.top(), m_device.bottom() + 1,
                       [&](int first, int end) { composer.composeInto(m_ground, first, end); });
            ground.below = &m_ground;
            group = pictures.nextGroup();
        }
        m_composer.emplace(m_view, m_device, std::move(group), ground);
    }

    /// Calls `work` with first and end of bands of the rows `first` to `end` - 1, on several
    /// threads.
    void inRowBands(int first, int end, const std::function<void(int, int)>& work) const {
        const int rowsPerBand = std::max(pixelsPerBand / m_device.width(), 1);
        raster::parallelForRowBands(end - first, rowsPerBand,
                                    [&](int from, int to) { work(first + from, first + to); });
    }

    DeviceView m_view;
    QRect m_device;
    /// What all groups of pictures but the last come to, where there are several.
    raster::RasterImage m_ground;
    std::optional<CanvasComposer> m_composer;
    std::optional<CanvasDecorations> m_decorations;
};

CanvasRenderer::CanvasRenderer() : m_coverage(std::make_unique<CoverageCache>()) {}
CanvasRenderer::~CanvasRenderer() = default;
CanvasRenderer::CanvasRenderer(CanvasRenderer&&) noexcept = default;
CanvasRenderer& CanvasRenderer::operator=(CanvasRenderer&&) noexcept = default;

LiveSurroundings* CanvasRenderer::surroundingsFor(const CanvasFrame& frame) {
    if (liveLayerIndex(frame) == frame.project->layers.size()) {
        m_surroundings.reset();
    } else if (!m_surroundings) {
        m_surroundings = std::make_unique<LiveSurroundings>();
    }
    return m_surroundings.get();
}

void CanvasRenderer::paint(QImage& target, const CanvasFrame& frame, const QRect& dirty) {
    if (frame.project == nullptr || !(frame.zoomScale > 0.0)) return;
    const QRect visible = dirty & viewportDeviceRect(frame) & target.rect();
    const Job job(frame, surroundingsFor(frame), *m_coverage, visible);
    if (job.device().isEmpty()) return;
    job.drawRows(target, QPoint(0, 0), job.device().top(), job.device().bottom() + 1);
}

void CanvasRenderer::paint(QPainter& painter, const CanvasFrame& frame, const QRect& dirty) {
    if (frame.project == nullptr || !(frame.zoomScale > 0.0)) return;
    const QRect visible =
        alignedRect(scaled(QRectF(dirty), frame.devicePixelRatio)) & viewportDeviceRect(frame);
    const Job job(frame, surroundingsFor(frame), *m_coverage, visible);
    const QRect device = job.device();
    if (device.isEmpty()) return;
    if (m_strip.width() < device.width())
        m_strip = QImage(device.width(), stripRows, QImage::Format_RGB32);
    if (m_strip.isNull()) throw std::bad_alloc();

    painter.save();
    // Device pixels one to one: a strip is copied, not scaled.
    painter.scale(1.0 / frame.devicePixelRatio, 1.0 / frame.devicePixelRatio);
    for (int top = device.top(); top <= device.bottom(); top += stripRows) {
        const int rows = std::min(stripRows, device.bottom() + 1 - top);
        job.drawRows(m_strip, QPoint(device.left(), top), top, top + rows);
        painter.drawImage(QPoint(device.left(), top), m_strip, QRect(0, 0, device.width(), rows));
    }
    painter.restore();
}

QRect viewportDeviceRect(const CanvasFrame& frame) {
    return alignedRect(
        scaled(QRectF(QPointF(0.0, 0.0), frame.viewportSize), frame.devicePixelRatio));
}

QRect viewportRect(const CanvasFrame& frame, const QRectF& canvasRect) {
    const QRectF points = scaled(canvasRect, frame.zoomScale).translated(frame.canvasOrigin);
    // Out to device pixels first: one that is touched at all may show the change.
    const QRectF device = QRectF(alignedRect(scaled(points, frame.devicePixelRatio)));
    return alignedRect(scaled(device, 1.0 / frame.devicePixelRatio));
}

bool shouldDrawPixelGrid(const CanvasFrame& frame) {
    if (!frame.showsPixelGrid || frame.project == nullptr || !(frame.zoomScale > 0.0)) return false;
    const QSizeF size = frame.viewportSize / frame.zoomScale;
    return std::min(size.width(), frame.project->canvasWidth) <= maximumGridPixels &&
           std::min(size.height(), frame.project->canvasHeight) <= maximumGridPixels;
}

} // namespace quillabrae::canvas
