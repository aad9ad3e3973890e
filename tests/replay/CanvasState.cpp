// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/CanvasState.h"

#include "replay/CanvasStage.h"
#include "replay/JsonForms.h"
#include "replay/Session.h"

#include <QJsonArray>

namespace quillabrae::replay {

QJsonObject canvasState(Session& session) {
    CanvasStage& stage = session.canvas();
    const canvas::CanvasView& view = stage.view();
    const QPointF origin = stage.scroller().clipBounds().topLeft();
    const QSizeF document = stage.scroller().documentSize();
    const auto hovered = view.hoveredCanvasPoint();
    const auto liveZoom = view.zoom().liveZoomScale();
    const model::PaintProject* project = session.store().activeProject();
    return {
        {QStringLiteral("zoom"), view.currentZoom()},
        {QStringLiteral("liveZoom"), liveZoom ? QJsonValue(*liveZoom) : QJsonValue()},
        {QStringLiteral("scrollOrigin"), QJsonArray{origin.x(), origin.y()}},
        {QStringLiteral("documentSize"), QJsonArray{document.width(), document.height()}},
        {QStringLiteral("hoveredPoint"),
         hovered ? QJsonValue(QJsonArray{hovered->x, hovered->y}) : QJsonValue()},
        {QStringLiteral("isDrawing"), view.drawing().isRunning()},
        {QStringLiteral("currentSelection"),
         project ? toJson(canvas::currentSelection(*project)) : QJsonValue()},
    };
}

} // namespace quillabrae::replay
