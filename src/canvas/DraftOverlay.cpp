// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DraftOverlay.h"

#include "canvas/CanvasView.h"
#include "raster/BlendKernels.h"

#include <cmath>

namespace quillabrae::canvas {
namespace {

constexpr double outlineWidth = 1.25;
constexpr double handleOutlineWidth = 1.0;
constexpr double caretWidth = 2.0;
/// How far marks and outlines reach beyond a box.
constexpr double markReach = 14.0;
constexpr double selectionOpacity = 0.3;

QRectF onScreen(const QRectF& canvasRect, double zoom, QPointF origin) {
    return {canvasRect.topLeft() * zoom + origin, canvasRect.size() * zoom};
}

void paintBox(QPainter& painter, DraftKind kind, const QRectF& box, const QColor& accent) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accent, outlineWidth));
    painter.drawRect(box);
    painter.setBrush(Qt::white);
    painter.setPen(QPen(accent, handleOutlineWidth));
    for (const DraftHandle& handle : draftHandles(kind)) painter.drawRect(handle.mark(box));
}

/// The pixels that a commit would leave, hard edged as the canvas's own.
void paintText(QPainter& painter, const TextDraft& text, double zoom, const QRectF& box,
               const QColor& accent) {
    painter.save();
    painter.setClipRect(box, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(box, text.preview().toQImage());
    QColor selected = accent;
    selected.setAlphaF(static_cast<float>(selectionOpacity));
    const raster::TextRange range = text.editing().selection();
    if (text.editing().preedit().isEmpty()) {
        for (const QRectF& rect : text.layout().selectionRects(range))
            painter.fillRect(onScreen(rect, zoom, box.topLeft()), selected);
    }
    painter.restore();
}

void paintCaret(QPainter& painter, const QRectF& caret, const model::ColorValue& color) {
    const raster::PixelColor ink = raster::PixelColor::of(color);
    painter.fillRect(caret, QColor(ink.red, ink.green, ink.blue));
}

} // namespace

QRegion draftRegion(const CanvasView& view, QPointF canvasOrigin) {
    QRegion region;
    const double zoom = view.currentZoom();
    const auto add = [&](const QRectF& canvasRect) {
        const QRectF box = onScreen(canvasRect, zoom, canvasOrigin);
        region += box.adjusted(-markReach, -markReach, markReach, markReach).toAlignedRect();
    };
    if (view.drafts().hasText()) add(view.textDraft().boxRect());
    if (view.drafts().hasShape()) add(view.shapeDraft().activeShapeDraft()->rect);
    return region;
}

QRectF draftCaretRect(const CanvasView& view, QPointF canvasOrigin) {
    if (!view.drafts().hasText()) return {};
    const TextDraft& text = view.textDraft();
    const double zoom = view.currentZoom();
    const QRectF box = onScreen(text.boxRect(), zoom, canvasOrigin);
    const QRectF caret =
        onScreen(text.layout().caretRect(text.editing().shownCaret()), zoom, box.topLeft());
    // On whole points, where it is not blurred.
    const QRectF shown(std::round(caret.x() - caretWidth / 2.0), caret.y(), caretWidth,
                       caret.height());
    return shown & box.adjusted(-caretWidth, 0.0, caretWidth, 0.0);
}

void paintDrafts(QPainter& painter, const CanvasView& view, QPointF canvasOrigin,
                 const QColor& accent) {
    const DraftGestures& drafts = view.drafts();
    const double zoom = view.currentZoom();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (drafts.hasText()) {
        const TextDraft& text = view.textDraft();
        const QRectF box = onScreen(text.boxRect(), zoom, canvasOrigin);
        paintText(painter, text, zoom, box, accent);
        paintCaret(painter, draftCaretRect(view, canvasOrigin), text.activeTextDraft()->color);
        paintBox(painter, DraftKind::text, box, accent);
    }
    if (drafts.hasShape()) {
        const QRectF rect = view.shapeDraft().activeShapeDraft()->rect;
        paintBox(painter, DraftKind::shape, onScreen(rect, zoom, canvasOrigin), accent);
    }
    painter.restore();
}

} // namespace quillabrae::canvas
