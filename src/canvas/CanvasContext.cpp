// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasContext.h"

#include "canvas/CanvasDisplay.h"
#include "canvas/CanvasHost.h"
#include "canvas/Scroller.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace quillabrae::canvas {

CanvasGeometry CanvasContext::geometry() const {
    const model::PaintProject* project = host.project();
    if (project == nullptr) {
        CanvasGeometry empty;
        empty.viewportSize = viewportSize;
        return empty;
    }
    return CanvasGeometry::of(*project, viewportSize);
}

QSizeF CanvasContext::documentViewSize(double zoom) const {
    return host.project() == nullptr ? viewportSize : geometry().documentViewSize(zoom);
}

void CanvasContext::editProject(const std::function<void(model::PaintProject&)>& edit) {
    const QScopedValueRollback<bool> editing(m_isEditing, true);
    host.editProject(edit);
}

void CanvasContext::repaintCanvasPixels(const QRect& rect) const {
    if (display != nullptr && !rect.isEmpty()) display->repaintCanvasPixels(rect);
}

void CanvasContext::repaintOverlays() const {
    if (display != nullptr) display->repaintOverlays();
}

void CanvasContext::repaintViewport() const {
    if (display != nullptr) display->repaintViewport();
}

QPointF limitedScrollOrigin(QPointF origin, QSizeF documentSize, QSizeF clipSize) {
    const double maximumX = std::max(documentSize.width() - clipSize.width(), 0.0);
    const double maximumY = std::max(documentSize.height() - clipSize.height(), 0.0);
    return {std::clamp(origin.x(), 0.0, maximumX), std::clamp(origin.y(), 0.0, maximumY)};
}

} // namespace quillabrae::canvas
