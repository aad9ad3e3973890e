// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasOverlays.h"

#include "canvas/CanvasRenderer.h"
#include "canvas/SelectionHandle.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quillabrae::canvas {
namespace {

constexpr double marchingAntsCycle = 1.25;
constexpr double handleMarkSize = 8.0;
constexpr double eraserOuterWidth = 1.5;
constexpr double eraserInnerWidth = 1.0;
/// White at opacity 0.92, and black at 0.72.
constexpr QColor eraserOuterColor(255, 255, 255, 235);
constexpr QColor eraserInnerColor(0, 0, 0, 184);
/// The frame around the keyboard's pixel: no smaller than it can be seen, with a dark line inside a
/// white one, and a bar across each side that points at the pixel.
constexpr double keyboardFrameLeast = 11.0;
constexpr double keyboardFrameReach = 8.0;

QRect aligned(const QRectF& rect) {
    return rect.toAlignedRect();
}

QRectF scaledRect(const QRectF& rect, double factor) {
    return {rect.topLeft() * factor, rect.size() * factor};
}

/// Where a rectangle of the canvas shows.
QRectF shown(const QRectF& rect, const CanvasFrame& frame) {
    return scaledRect(rect, frame.zoomScale).translated(frame.canvasOrigin);
}

/// On whole device pixels, around the pixel and never over it.
QRectF keyboardFrame(QPoint pixel, const CanvasFrame& frame) {
    QRectF rect = shown(QRectF(QPointF(pixel), QSizeF(1.0, 1.0)), frame);
    const double grow = std::max(1.0, (keyboardFrameLeast - rect.width()) / 2.0);
    rect.adjust(-grow, -grow, grow, grow);
    const auto snapped = [&](double value) {
        return std::round(value * frame.devicePixelRatio) / frame.devicePixelRatio;
    };
    return {QPointF(snapped(rect.left()), snapped(rect.top())),
            QPointF(snapped(rect.right()), snapped(rect.bottom()))};
}

} // namespace

int marchingAntsPhase(double seconds) {
    return static_cast<int>(std::fmod(seconds, marchingAntsCycle) / marchingAntsCycle *
                            MarchingAnts::phaseCount) %
           MarchingAnts::phaseCount;
}

void CanvasOverlays::prepare(const CanvasFrame& frame, const OverlayState& state) {
    m_devicePixelRatio = frame.devicePixelRatio;
    m_eraserCircle.reset();
    if (state.eraserCenter) {
        const double diameter = std::max(state.eraserDiameter * frame.zoomScale, 1.0);
        const QPointF center =
            QPointF(state.eraserCenter->x, state.eraserCenter->y) * frame.zoomScale +
            frame.canvasOrigin;
        m_eraserCircle =
            QRectF(center - QPointF(diameter, diameter) / 2.0, QSizeF(diameter, diameter));
    }
    m_isKeyboardPressed = state.isKeyboardPressed;
    m_keyboardFrame = state.keyboardPixel
                          ? std::optional(keyboardFrame(*state.keyboardPixel, frame))
                          : std::nullopt;
    if (!state.selection) {
        m_key.reset();
        m_ants.reset();
        m_painted = {};
        return;
    }
    m_selectionRect = shown(rectOf(*state.selection), frame);
    const AntsKey key{*state.selection, frame.zoomScale, frame.canvasOrigin, frame.viewportSize,
                      frame.devicePixelRatio};
    if (m_key != key) layOutAnts(key);
}

void CanvasOverlays::layOutAnts(const AntsKey& key) {
    m_key = key;
    const QSizeF size = key.viewportSize * key.devicePixelRatio;
    const QSize pixels(static_cast<int>(std::ceil(size.width())),
                       static_cast<int>(std::ceil(size.height())));
    if (m_ants)
        m_ants->restart(pixels, key.devicePixelRatio);
    else
        m_ants.emplace(pixels, key.devicePixelRatio);
    const QRectF rect = scaledRect(m_selectionRect, key.devicePixelRatio);
    if (!key.selection.maskPNGData) return addRectSegments(rect);
    const SelectionMaskOutlinePlan& plan = m_outlines.outline(*key.selection.maskPNGData);
    if (plan.width > 0 && plan.height > 0) addMaskSegments(plan, rect);
}

void CanvasOverlays::addRectSegments(const QRectF& rect) {
    // The border lies between pixels: on whole device pixels.
    const QRectF snapped(QPointF(std::round(rect.left()), std::round(rect.top())),
                         QPointF(std::round(rect.right()), std::round(rect.bottom())));
    m_ants->addSegment(snapped.topLeft(), snapped.topRight());
    m_ants->addSegment(snapped.topRight(), snapped.bottomRight());
    m_ants->addSegment(snapped.bottomRight(), snapped.bottomLeft());
    m_ants->addSegment(snapped.bottomLeft(), snapped.topLeft());
}

void CanvasOverlays::addMaskSegments(const SelectionMaskOutlinePlan& plan, const QRectF& rect) {
    // Where each border between two columns, or rows, of the mask shows.
    const auto borders = [](int count, double start, double length) {
        std::vector<double> places(static_cast<std::size_t>(count) + 1);
        const double scale = length / count;
        for (std::size_t i = 0; i < places.size(); ++i)
            places[i] = std::round(start + static_cast<double>(i) * scale);
        return places;
    };
    const std::vector<double> columns = borders(plan.width, rect.left(), rect.width());
    const std::vector<double> rows = borders(plan.height, rect.top(), rect.height());
    const auto at = [&](int x, int y) {
        return QPointF(columns[static_cast<std::size_t>(x)], rows[static_cast<std::size_t>(y)]);
    };
    for (const SelectionMaskOutlineSegment& segment : plan.segments)
        m_ants->addSegment(at(segment.startX, segment.startY), at(segment.endX, segment.endY));
}

QRectF CanvasOverlays::handleRect(QPointF center) const {
    constexpr double half = handleMarkSize / 2.0;
    return {center - QPointF(half, half), QSizeF(handleMarkSize, handleMarkSize)};
}

QRegion CanvasOverlays::antsRegion() const {
    return m_ants ? m_ants->region() : QRegion();
}

QRegion CanvasOverlays::region() const {
    QRegion region = antsRegion();
    if (m_ants) {
        for (const SelectionHandle handle : allSelectionHandles) {
            region += aligned(
                handleRect(handlePoint(handle, m_selectionRect)).adjusted(-1.0, -1.0, 1.0, 1.0));
        }
    }
    if (m_eraserCircle) {
        const QRect circle = aligned(m_eraserCircle->adjusted(-2.0, -2.0, 2.0, 2.0));
        region += circle;
    }
    if (m_keyboardFrame) {
        constexpr double reach = keyboardFrameReach + 3.0;
        region += aligned(m_keyboardFrame->adjusted(-reach, -reach, reach, reach));
    }
    return region;
}

void CanvasOverlays::paintAnts(QPainter& painter, const QImage& base, const QRegion& exposed,
                               int phase, const QColor& accent) {
    QRegion device;
    for (const QRect& rect : exposed)
        device += aligned(scaledRect(QRectF(rect), m_devicePixelRatio)) & base.rect();
    if (m_painted.size() != base.size()) m_painted = QImage(base.size(), QImage::Format_RGB32);
    m_ants->paint(m_painted, base, device, phase, accent);
    painter.save();
    // Device pixels one to one: they are copied, not scaled.
    painter.scale(1.0 / m_devicePixelRatio, 1.0 / m_devicePixelRatio);
    for (const QRect& rect : device) painter.drawImage(rect.topLeft(), m_painted, rect);
    painter.restore();
}

void CanvasOverlays::paintMarks(QPainter& painter, const QColor& accent) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_ants) {
        painter.setPen(QPen(accent, 1.0));
        painter.setBrush(Qt::white);
        for (const SelectionHandle handle : allSelectionHandles)
            painter.drawRect(handleRect(handlePoint(handle, m_selectionRect)));
    }
    if (m_eraserCircle) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(eraserOuterColor, eraserOuterWidth));
        painter.drawEllipse(*m_eraserCircle);
        painter.setPen(QPen(eraserInnerColor, eraserInnerWidth));
        painter.drawEllipse(*m_eraserCircle);
    }
    if (m_keyboardFrame) paintKeyboardFrame(painter, accent);
    painter.restore();
}

void CanvasOverlays::paintKeyboardFrame(QPainter& painter, const QColor& accent) const {
    const QRectF& frame = *m_keyboardFrame;
    const QPointF middle = frame.center();
    const QPointF across(keyboardFrameReach, 0.0);
    const QPointF along(0.0, keyboardFrameReach);
    painter.setBrush(Qt::NoBrush);
    const QPen casing(Qt::white, 4.0, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    const QPen line(m_isKeyboardPressed ? accent : QColor(Qt::black), 2.0, Qt::SolidLine,
                    Qt::FlatCap, Qt::MiterJoin);
    for (const QPen& pen : {casing, line}) {
        painter.setPen(pen);
        painter.drawRect(frame);
        const QPointF left(frame.left(), middle.y());
        const QPointF right(frame.right(), middle.y());
        const QPointF top(middle.x(), frame.top());
        const QPointF bottom(middle.x(), frame.bottom());
        painter.drawLine(left - across, left);
        painter.drawLine(right, right + across);
        painter.drawLine(top - along, top);
        painter.drawLine(bottom, bottom + along);
    }
}

} // namespace quillabrae::canvas
