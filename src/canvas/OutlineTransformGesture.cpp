// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/OutlineTransformGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/PointerState.h"
#include "canvas/SelectionEdit.h"
#include "canvas/ZoomController.h"

#include <QCoreApplication>

namespace quillabrae::canvas {

std::optional<SelectionDragMode> selectionDragMode(QPointF location,
                                                   const model::PixelSelection& selection,
                                                   double zoom) {
    const QRectF rect = rectOf(selection);
    return selectionDragMode(location - QPointF(selectionHandleGutter, selectionHandleGutter),
                             QRectF(rect.topLeft() * zoom, rect.size() * zoom));
}

void OutlineTransformGesture::transformSelectionOutline(const DragValue& value) {
    const auto selection = selectionInForce(m_context);
    if (!selection) return reset();
    const double zoom = m_zoom.currentZoom();
    if (!m_drag) {
        const auto mode = selectionDragMode(value.startLocation, *selection, zoom);
        if (!mode) return;
        m_drag = TransformDrag{*mode, *selection, value};
    }
    m_drag->value = value;
    m_shownSelection = withRect(m_drag->start, m_drag->rect(zoom, m_context.pointer.modifiers()));
    select(m_context, m_shownSelection);
}

void OutlineTransformGesture::giveUpIfStale() {
    if (m_drag && selectionInForce(m_context) != m_shownSelection) reset();
}

void OutlineTransformGesture::refresh() {
    if (m_drag) transformSelectionOutline(m_drag->value);
}

void OutlineTransformGesture::finish() {
    if (m_drag && m_drag->mode.isMove()) {
        recordEdit(m_context, QCoreApplication::translate("CanvasHistory", "Move Selection"),
                   QStringLiteral("cursorarrow"));
    } else if (m_drag) {
        recordEdit(m_context,
                   QCoreApplication::translate("CanvasHistory", "Resize Selection Outline"),
                   QStringLiteral("arrow.up.left.and.arrow.down.right"));
    }
    reset();
}

} // namespace quillabrae::canvas
