// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/PanGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/Scroller.h"

namespace quillabrae::canvas {

void PanGesture::panCanvas(QPointF translation) {
    Scroller* scroller = m_context.scroller;
    if (scroller == nullptr) return;
    const QRectF clip = scroller->clipBounds();
    if (!m_panStartOrigin) m_panStartOrigin = clip.topLeft();
    const QPointF target = *m_panStartOrigin - translation;
    scroller->setClipBoundsOrigin(
        limitedScrollOrigin(target, scroller->documentSize(), clip.size()));
    m_context.repaintViewport();
}

} // namespace quillabrae::canvas
