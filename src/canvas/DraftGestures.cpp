// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DraftGestures.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/PointerState.h"
#include "canvas/ShapeDraft.h"
#include "canvas/TextDraft.h"
#include "canvas/ZoomController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {

bool DraftGestures::isOfActiveProject(const QUuid& layerID) const {
    const model::PaintProject* project = m_context.host.project();
    return project != nullptr && std::ranges::find(project->layers, layerID,
                                                   &model::PaintLayer::id) != project->layers.end();
}

bool DraftGestures::hasShape() const {
    const auto& draft = m_shape.activeShapeDraft();
    return draft && isOfActiveProject(draft->layerID);
}

bool DraftGestures::hasText() const {
    const auto& draft = m_text.activeTextDraft();
    return draft && isOfActiveProject(draft->layerID);
}

QRectF DraftGestures::box(DraftKind draft) const {
    const QRectF rect =
        draft == DraftKind::shape ? m_shape.activeShapeDraft()->rect : m_text.boxRect();
    const double zoom = m_zoom.currentZoom();
    return {m_context.geometry().interactiveViewPoint({rect.x(), rect.y()}, zoom),
            rect.size() * zoom};
}

const DraftHandle* DraftGestures::handleAt(QPointF location) const {
    if (hasShape()) {
        if (const DraftHandle* handle =
                draftHandleAt(DraftKind::shape, location, box(DraftKind::shape)))
            return handle;
    }
    return hasText() ? draftHandleAt(DraftKind::text, location, box(DraftKind::text)) : nullptr;
}

bool DraftGestures::isInText(QPointF location) const {
    return hasText() && containsPoint(box(DraftKind::text), location);
}

QPointF DraftGestures::inText(QPointF location) const {
    return (location - box(DraftKind::text).topLeft()) / m_zoom.currentZoom();
}

std::optional<DraftGestures::Drag> DraftGestures::begin(QPointF location) const {
    if (const DraftHandle* handle = handleAt(location)) return Drag{.handle = handle};
    if (isInText(location)) return Drag{};
    return std::nullopt;
}

bool DraftGestures::dragChanged(const DragValue& value) {
    const bool isPress = !std::exchange(m_isButtonDown, true);
    if (isPress) m_drag = begin(value.startLocation);
    if (!m_drag) return false;
    if (m_drag->handle == nullptr) {
        dragInText(value, isPress);
        return true;
    }
    const double distance = std::hypot(value.translation.x(), value.translation.y());
    m_drag->hasBegun = m_drag->hasBegun || distance >= m_drag->handle->minimumDistance;
    if (m_drag->hasBegun) dragHandle(*m_drag->handle, value.translation / m_zoom.currentZoom());
    return true;
}

bool DraftGestures::dragEnded(const DragValue& value) {
    const bool isTaken = m_drag.has_value() && dragChanged(value);
    m_isButtonDown = false;
    m_drag.reset();
    m_shape.resizeEnded();
    m_text.dragEnded();
    return isTaken;
}

void DraftGestures::dragHandle(const DraftHandle& handle, QPointF translation) {
    if (const auto* side = std::get_if<SelectionHandle>(&handle.action)) {
        m_shape.resize(*side, translation);
    } else if (const auto* axis = std::get_if<TextDraftResizeAxis>(&handle.action)) {
        m_text.resize(*axis, translation);
    } else {
        m_text.move(translation);
    }
}

void DraftGestures::dragInText(const DragValue& value, bool isPress) {
    if (!hasText()) return;
    const bool extends = !isPress || m_context.pointer.modifiers().shift;
    m_text.edit([&](TextEditing& editing, const raster::TextLayout& layout) {
        editing.moveTo(inText(value.location),
                       extends ? SelectionEnd::stays : SelectionEnd::follows, layout);
    });
}

bool DraftGestures::doubleClick(QPointF location) {
    if (handleAt(location) != nullptr || !isInText(location)) return false;
    m_text.edit([&](TextEditing& editing, const raster::TextLayout& layout) {
        editing.selectWordAt(inText(location), layout);
    });
    return true;
}

} // namespace quillabrae::canvas
