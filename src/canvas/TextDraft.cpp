// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/TextDraft.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceText.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;

namespace {

constexpr QSizeF leastBoxSize(48.0, 32.0);
/// The box of a new draft: so many font sizes, and at least so many pixels.
constexpr QSizeF newBoxInFontSizes(8.0, 3.0);
constexpr QSizeF leastNewBoxSize(160.0, 60.0);

double clampedLength(double length, double least, double available) {
    return std::round(std::min(std::max(length, std::min(least, available)), available));
}

QSizeF canvasSize(const model::PaintProject& project) {
    return {project.canvasWidth, project.canvasHeight};
}

void applySettings(CanvasTextDraft& draft, const model::PaintAppSettings& settings) {
    draft.color = settings.primaryColor;
    draft.style = {.fontFamily = settings.textFontFamily,
                   .isBold = settings.textBold,
                   .isItalic = settings.textItalic,
                   .isUnderlined = settings.textUnderline,
                   .isStruckThrough = settings.textStrikethrough,
                   .alignment = settings.textAlignment,
                   .fontSize = settings.textFontSize};
}

} // namespace

QSizeF clampedTextBoxSize(QSizeF size, CanvasPoint point, QSizeF canvas) {
    return {
        clampedLength(size.width(), leastBoxSize.width(), std::max(canvas.width() - point.x, 1.0)),
        clampedLength(size.height(), leastBoxSize.height(),
                      std::max(canvas.height() - point.y, 1.0))};
}

CanvasPoint clampedTextPoint(CanvasPoint point, QSizeF textBoxSize, QSizeF canvas) {
    const auto held = [](double value, double room) {
        return std::round(std::min(std::max(value, 0.0), std::max(room, 0.0)));
    };
    return {held(point.x, canvas.width() - textBoxSize.width()),
            held(point.y, canvas.height() - textBoxSize.height())};
}

QRectF TextDraft::boxRect() const {
    return {QPointF(m_activeTextDraft->point.x, m_activeTextDraft->point.y),
            m_activeTextDraft->textBoxSize};
}

void TextDraft::beginTextEditing(CanvasPoint point) {
    commitActiveText();
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project == nullptr ? nullptr : project->selectedLayer();
    if (layer == nullptr || !layer->isVisible || layer->isLocked) return;
    const QSizeF canvas = canvasSize(*project);
    CanvasTextDraft draft;
    draft.id = QUuid::createUuid();
    draft.point = {std::min(canvas.width(), std::max(std::round(point.x), 0.0)),
                   std::min(canvas.height(), std::max(std::round(point.y), 0.0))};
    draft.layerID = layer->id;
    applySettings(draft, m_context.host.settings());
    const QSizeF box = (newBoxInFontSizes * draft.style.fontSize).expandedTo(leastNewBoxSize);
    draft.textBoxSize = clampedTextBoxSize(box, draft.point, canvas);
    m_activeTextDraft = draft;
    m_canvas = canvas;
    changed(boxRect());
}

void TextDraft::commitActiveText() {
    if (!m_activeTextDraft) return;
    m_editing.commitPreedit();
    CanvasTextDraft draft = *m_activeTextDraft;
    draft.text = m_editing.text();
    const QRect box = boxRect().toAlignedRect();
    forget();
    m_context.repaintOverlays();
    if (draft.text.trimmed().isEmpty()) return;
    const model::PaintProject* project = m_context.host.project();
    if (project == nullptr) return;
    const auto found = std::ranges::find(project->layers, draft.layerID, &model::PaintLayer::id);
    if (found == project->layers.end() || !found->isVisible || found->isLocked) return;
    model::PaintLayer layer = *found;
    raster::LayerRasterService::drawText(draft.text, layer, project->canvasWidth,
                                         project->canvasHeight, draft.point, draft.color,
                                         draft.style, draft.textBoxSize);
    const auto index = static_cast<std::size_t>(found - project->layers.begin());
    m_context.editProject([&](model::PaintProject& edited) {
        edited.layers[index].bitmapPNGData = layer.bitmapPNGData;
        edited.lastModified = m_context.host.now();
    });
    m_context.repaintCanvasPixels(box);
    m_context.host.recordHistory(QCoreApplication::translate("CanvasHistory", "Text"),
                                 QStringLiteral("textformat"));
}

void TextDraft::refreshActiveTextStyle() {
    if (!m_activeTextDraft) return;
    applySettings(*m_activeTextDraft, m_context.host.settings());
    changed(boxRect());
}

void TextDraft::projectChanged() {
    const model::PaintProject* project = m_context.host.project();
    if (!m_activeTextDraft || project == nullptr) return;
    CanvasTextDraft& draft = *m_activeTextDraft;
    const bool isItsProject = std::ranges::any_of(
        project->layers, [&](const auto& layer) { return layer.id == draft.layerID; });
    if (!isItsProject || std::exchange(m_canvas, canvasSize(*project)) == canvasSize(*project))
        return;
    const QRectF before = boxRect();
    if (QRectF(QPointF(), m_canvas).contains(before)) return;
    draft.point = clampedTextPoint(draft.point, draft.textBoxSize, m_canvas);
    draft.textBoxSize = clampedTextBoxSize(draft.textBoxSize, draft.point, m_canvas);
    dragEnded();
    changed(before);
}

void TextDraft::move(QPointF translation) {
    const model::PaintProject* project = m_context.host.project();
    if (!m_activeTextDraft || project == nullptr) return;
    const QRectF before = boxRect();
    if (!m_textDragStartPoint) m_textDragStartPoint = m_activeTextDraft->point;
    m_activeTextDraft->point = clampedTextPoint(
        {m_textDragStartPoint->x + translation.x(), m_textDragStartPoint->y + translation.y()},
        m_activeTextDraft->textBoxSize, canvasSize(*project));
    changed(before);
}

void TextDraft::resize(TextDraftResizeAxis axis, QPointF translation) {
    const model::PaintProject* project = m_context.host.project();
    if (!m_activeTextDraft || project == nullptr) return;
    const QRectF before = boxRect();
    if (!m_textResizeStartSize) m_textResizeStartSize = m_activeTextDraft->textBoxSize;
    QSizeF size = *m_textResizeStartSize;
    if (axis != TextDraftResizeAxis::vertical) size.rwidth() += translation.x();
    if (axis != TextDraftResizeAxis::horizontal) size.rheight() += translation.y();
    m_activeTextDraft->textBoxSize =
        clampedTextBoxSize(size, m_activeTextDraft->point, canvasSize(*project));
    changed(before);
}

void TextDraft::dragEnded() {
    m_textDragStartPoint.reset();
    m_textResizeStartSize.reset();
}

void TextDraft::edit(const std::function<void(TextEditing&, const raster::TextLayout&)>& edit) {
    if (!m_activeTextDraft) return;
    edit(m_editing, layout());
    m_activeTextDraft->text = m_editing.text();
    changed(boxRect());
}

const raster::TextLayout& TextDraft::layout() const {
    if (!m_layout) {
        m_layout.emplace(m_editing.shownText(), m_activeTextDraft->style,
                         m_activeTextDraft->textBoxSize.width());
    }
    return *m_layout;
}

const raster::RasterImage& TextDraft::preview() const {
    if (m_preview.isNull()) {
        const QSizeF box = m_activeTextDraft->textBoxSize;
        m_preview = raster::LayerRasterService::transparentImage(box.width(), box.height());
        raster::LayerRasterService::drawText(layout(), m_preview, {0.0, 0.0},
                                             m_activeTextDraft->color, box);
    }
    return m_preview;
}

/// `before`: the box as it was.
void TextDraft::changed(const QRectF& before) {
    m_layout.reset();
    m_preview = {};
    m_context.repaintCanvasPixels(before.united(boxRect()).toAlignedRect());
    m_context.repaintOverlays();
}

void TextDraft::forget() {
    const QRect box = boxRect().toAlignedRect();
    m_activeTextDraft.reset();
    m_editing = {};
    m_layout.reset();
    m_preview = {};
    dragEnded();
    m_context.repaintCanvasPixels(box);
}

} // namespace quillabrae::canvas
