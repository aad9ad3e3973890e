// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/RegionSelectionGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/EndpointGesture.h"
#include "canvas/FloatingSelection.h"
#include "canvas/PointerState.h"
#include "canvas/SelectionEdit.h"
#include "canvas/SelectionHandle.h"
#include "raster/LayerRasterServiceMasks.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;
using model::PixelSelection;
using model::SelectionCombineOperation;

namespace {

/// A drag shorter than this, in screen points, is a click.
constexpr double selectionClickDistanceThreshold = 3.0;

std::optional<SelectionCombineOperation> combineOperation(Modifiers modifiers) {
    if (modifiers.option) return SelectionCombineOperation::subtract;
    if (modifiers.command) return SelectionCombineOperation::add;
    return std::nullopt;
}

/// Out to whole pixels, held to the canvas.
QRectF wholePixelRect(CanvasPoint low, CanvasPoint high, QSizeF canvas) {
    const double left = std::max(std::floor(low.x), 0.0);
    const double top = std::max(std::floor(low.y), 0.0);
    const double right = std::min(std::ceil(high.x), canvas.width());
    const double bottom = std::min(std::ceil(high.y), canvas.height());
    return {left, top, std::max(right - left, 0.0), std::max(bottom - top, 0.0)};
}

QSizeF canvasSize(const CanvasContext& context) {
    const model::PaintProject* project = context.host.project();
    return {project->canvasWidth, project->canvasHeight};
}

} // namespace

void RegionSelectionGesture::beginSelectionCreation(CanvasPoint point) {
    commitFloatingSelectionIfNeeded(m_context);
    m_selectionCombineOperation = combineOperation(m_context.pointer.modifiers());
    m_selectionAtStart = m_context.host.project()->pixelSelection;
    m_selectionCombineBase = m_selectionCombineOperation ? m_selectionAtStart : std::nullopt;
    m_selectionCreationStartPoint = point;
    m_currentSelectionCreationPoint = point;
    m_selectionCreationPath = {point};
    m_didCreateSelection = false;
    show(m_selectionCombineBase);
}

void RegionSelectionGesture::updateSelectionCreation(CanvasPoint point) {
    if (!isRunning() || m_context.host.project() == nullptr) return;
    m_currentSelectionCreationPoint = point;
    if (m_context.host.settings().selectedTool == PaintTool::lassoSelect &&
        m_selectionCreationPath.back() != point)
        m_selectionCreationPath.push_back(point);

    const QRectF rect = selectionRect(*m_selectionCreationStartPoint, point);
    m_didCreateSelection = rect.width() >= 1.0 && rect.height() >= 1.0;
    if (!m_didCreateSelection) return restoreBase();
    show(selectionAfterCombining(selectionOf(rect)));
}

void RegionSelectionGesture::optionPressed() {
    if (!isRunning() || m_selectionCombineOperation) return;
    m_selectionCombineOperation = SelectionCombineOperation::subtract;
    m_selectionCombineBase = m_selectionAtStart;
    refresh();
}

void RegionSelectionGesture::refresh() {
    if (m_currentSelectionCreationPoint) updateSelectionCreation(*m_currentSelectionCreationPoint);
}

QRectF RegionSelectionGesture::selectionRect(CanvasPoint from, CanvasPoint to) const {
    const PaintTool tool = m_context.host.settings().selectedTool;
    if (tool == PaintTool::lassoSelect) return lassoSelectionRect();
    const QSizeF canvas = canvasSize(m_context);
    const CanvasPoint end =
        m_context.pointer.modifiers().shift ? squareEndPoint(from, to, canvas) : to;
    return wholePixelRect({std::min(from.x, end.x), std::min(from.y, end.y)},
                          {std::max(from.x, end.x), std::max(from.y, end.y)}, canvas);
}

QRectF RegionSelectionGesture::lassoSelectionRect() const {
    const auto [left, right] = std::ranges::minmax(m_selectionCreationPath, {}, &CanvasPoint::x);
    const auto [top, bottom] = std::ranges::minmax(m_selectionCreationPath, {}, &CanvasPoint::y);
    return wholePixelRect({left.x, top.y}, {right.x, bottom.y}, canvasSize(m_context));
}

PixelSelection RegionSelectionGesture::selectionOf(const QRectF& rect) const {
    namespace engine = raster::LayerRasterService;
    PixelSelection selection{rect.x(), rect.y(), rect.width(), rect.height(), std::nullopt};
    const PaintTool tool = m_context.host.settings().selectedTool;
    if (tool == PaintTool::lassoSelect) {
        selection.maskPNGData = engine::lassoSelectionMask(m_selectionCreationPath, rect);
    } else if (tool == PaintTool::ellipseSelect) {
        selection.maskPNGData = engine::ellipseSelectionMask(rect.width(), rect.height());
    }
    return selection;
}

std::optional<PixelSelection> RegionSelectionGesture::selectionAfterCombining(
    const PixelSelection& selection) const {
    if (!m_selectionCombineOperation) return selection;
    if (m_selectionCombineBase) {
        return raster::LayerRasterService::combinedSelection(*m_selectionCombineBase, selection,
                                                             *m_selectionCombineOperation);
    }
    if (*m_selectionCombineOperation == SelectionCombineOperation::add) return selection;
    return std::nullopt;
}

void RegionSelectionGesture::restoreBase() {
    show(m_selectionCombineBase);
}

void RegionSelectionGesture::show(const std::optional<PixelSelection>& selection) {
    m_shownSelection = selection;
    select(m_context, selection);
}

void RegionSelectionGesture::finishSelectionCreation(double dragDistance) {
    const bool isClick = model::createsSelectionRegion(m_context.host.settings().selectedTool) &&
                         dragDistance < selectionClickDistanceThreshold;
    if (isClick || !m_didCreateSelection)
        restoreBase();
    else
        recordEdit(m_context, QCoreApplication::translate("CanvasHistory", "Select"),
                   QStringLiteral("selection.pin.in.out"));
    cancel();
}

void RegionSelectionGesture::cancel() {
    m_selectionCreationStartPoint.reset();
    m_currentSelectionCreationPoint.reset();
    m_selectionCombineBase.reset();
    m_selectionCombineOperation.reset();
    m_selectionCreationPath.clear();
    m_shownSelection.reset();
    m_didCreateSelection = false;
}

void RegionSelectionGesture::giveUpIfStale() {
    if (!isRunning()) return;
    const model::PaintProject* project = m_context.host.project();
    const bool isSame = project != nullptr && project->pixelSelection == m_shownSelection &&
                        !project->floatingSelection;
    if (!isSame) cancel();
}

} // namespace quillabrae::canvas
