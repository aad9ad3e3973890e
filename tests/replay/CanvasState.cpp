// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/CanvasState.h"

#include "replay/CanvasStage.h"
#include "replay/JsonForms.h"
#include "replay/Session.h"

#include <QJsonArray>

namespace quillabrae::replay {

namespace {

QJsonValue rectJson(const QRectF& rect) {
    return QJsonArray{rect.x(), rect.y(), rect.width(), rect.height()};
}

QJsonValue shapeJson(const std::optional<canvas::CanvasShapeDraft>& draft) {
    if (!draft) return {};
    return QJsonObject{{QStringLiteral("rect"), rectJson(draft->rect)},
                       {QStringLiteral("shape"), model::rawText(draft->shape)},
                       {QStringLiteral("drawingMode"), model::rawText(draft->drawingMode)},
                       {QStringLiteral("outlineWidth"), draft->outlineWidth},
                       {QStringLiteral("outlineColor"), toJson(draft->outlineColor)},
                       {QStringLiteral("fillColor"), toJson(draft->fillColor)},
                       {QStringLiteral("usesSwappedColors"), draft->usesSwappedColors}};
}

QJsonValue textJson(const canvas::TextDraft& text) {
    const auto& draft = text.activeTextDraft();
    if (!draft) return {};
    return QJsonObject{{QStringLiteral("text"), draft->text},
                       {QStringLiteral("box"), rectJson(text.boxRect())},
                       {QStringLiteral("caret"), text.editing().caret()},
                       {QStringLiteral("color"), toJson(draft->color)},
                       {QStringLiteral("fontSize"), draft->style.fontSize}};
}

} // namespace

QJsonObject canvasState(Session& session) {
    CanvasStage& stage = session.canvas();
    const canvas::CanvasView& view = stage.view();
    const QPointF origin = stage.scroller().clipBounds().topLeft();
    const QSizeF document = stage.scroller().documentSize();
    const auto hovered = view.hoveredCanvasPoint();
    const auto keyboardPixel = view.keyboardPointer().pixel();
    const auto liveZoom = view.zoom().liveZoomScale();
    const model::PaintProject* project = session.store().activeProject();
    return {
        {QStringLiteral("zoom"), view.currentZoom()},
        {QStringLiteral("liveZoom"), liveZoom ? QJsonValue(*liveZoom) : QJsonValue()},
        {QStringLiteral("scrollOrigin"), QJsonArray{origin.x(), origin.y()}},
        {QStringLiteral("documentSize"), QJsonArray{document.width(), document.height()}},
        {QStringLiteral("hoveredPoint"),
         hovered ? QJsonValue(QJsonArray{hovered->x, hovered->y}) : QJsonValue()},
        {QStringLiteral("keyboardPixel"),
         keyboardPixel ? QJsonValue(QJsonArray{keyboardPixel->x(), keyboardPixel->y()})
                       : QJsonValue()},
        {QStringLiteral("isDrawing"), view.drawing().isRunning()},
        {QStringLiteral("shapeDraft"), shapeJson(view.shapeDraft().activeShapeDraft())},
        {QStringLiteral("textDraft"), textJson(view.textDraft())},
        {QStringLiteral("currentSelection"),
         project ? toJson(canvas::currentSelection(*project)) : QJsonValue()},
    };
}

} // namespace quillabrae::replay
