// SPDX-License-Identifier: GPL-3.0-or-later
// Moving what is opaque on a layer to an edge or the middle, tried live and then kept or not.
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/AdjustmentPreviews.h"
#include "store/Attempt.h"
#include "store/SelectionState.h"

#include <cmath>

namespace quillabrae::store {
namespace {

using model::PaintLayer;
using model::PaintProject;
namespace Raster = raster::LayerRasterService;

/// A shorter way is none.
constexpr double shortestMove = 0.5;

double alignedX(const QRectF& object, const QRectF& bounds, AlignHorizontalTarget target) {
    switch (target) {
        case AlignHorizontalTarget::left:
            return bounds.left();
        case AlignHorizontalTarget::center:
            return std::trunc(bounds.center().x() - object.width() / 2.0);
        case AlignHorizontalTarget::right:
            return bounds.right() - object.width();
        case AlignHorizontalTarget::keep:
            break;
    }
    return object.left();
}

double alignedY(const QRectF& object, const QRectF& bounds, AlignVerticalTarget target) {
    switch (target) {
        case AlignVerticalTarget::top:
            return bounds.top();
        case AlignVerticalTarget::middle:
            return std::trunc(bounds.center().y() - object.height() / 2.0);
        case AlignVerticalTarget::bottom:
            return bounds.bottom() - object.height();
        case AlignVerticalTarget::keep:
            break;
    }
    return object.top();
}

/// Within the selection, or on the whole canvas. Whether anything moved.
bool alignObject(const PaintProject& project, PaintLayer& layer, AlignObjectAction action) {
    const double width = project.canvasWidth;
    const double height = project.canvasHeight;
    const auto selection = activeSelection(project);
    const QRectF bounds = Raster::pixelAlignedRect(
        selection ? rectOf(*selection) : QRectF(0.0, 0.0, width, height), width, height);
    if (bounds.isEmpty()) return false;
    const auto object =
        Raster::opaquePixelBounds(Raster::renderLayer(layer, width, height), bounds);
    if (!object) return false;
    const QPointF place(alignedX(*object, bounds, horizontalTarget(action)),
                        alignedY(*object, bounds, verticalTarget(action)));
    const QPointF way = place - object->topLeft();
    if (std::abs(way.x()) < shortestMove && std::abs(way.y()) < shortestMove) return false;
    return Raster::moveOpaquePixels(layer, width, height, *object, place);
}

QString cancelledAlignment() {
    return ProjectStore::tr("Align cancelled");
}

} // namespace

bool ProjectStore::applyAlignObject(AlignObjectAction action, AdjustmentRun run) {
    return Attempt::run(*this, tr("Align"), [&]() -> bool {
        PaintLayer* layer = AdjustmentPreviews::layerToAdjust(*this);
        if (!layer) return false;
        // Also where nothing is found to align.
        if (run == AdjustmentRun::recorded)
            m_lastRepeatableAction = RepeatableActions::AlignObject{action};
        PaintProject& project = *projectToEdit();
        if (!alignObject(project, *layer, action)) {
            setStatusMessage(tr("Nothing to align"));
            return false;
        }
        if (run == AdjustmentRun::recorded)
            finishAlignObject(project, action);
        else
            AdjustmentPreviews::show(*this, project, run, tr("Previewing %1").arg(title(action)));
        return true;
    });
}

void ProjectStore::finishAlignObject(PaintProject& project, AlignObjectAction action) {
    AdjustmentPreviews::finish(
        *this, project,
        {RepeatableActions::AlignObject{action}, tr("%1 applied").arg(title(action)),
         tr("Align Object"), QStringLiteral("square.grid.3x3")});
}

void ProjectStore::beginAlignObjectPreview() {
    AdjustmentPreviews::begin(*this, m_previews->align);
}

void ProjectStore::restoreAlignPreviewOriginal() {
    if (m_previews->align.original) restoreOriginal(*m_previews->align.original);
}

bool ProjectStore::previewAlignObject(AlignObjectAction action) {
    restoreAlignPreviewOriginal();
    const bool isShown = applyAlignObject(action, AdjustmentRun::preview);
    m_previews->align.choice = isShown ? std::optional(action) : std::nullopt;
    return isShown;
}

std::optional<AlignObjectAction> ProjectStore::alignPreviewAction() const {
    return m_previews->align.choice;
}

void ProjectStore::cancelAlignObjectPreview() {
    AdjustmentPreviews::cancel(*this, m_previews->align, cancelledAlignment());
}

void ProjectStore::commitAlignObjectPreview() {
    AdjustmentPreviews::commit(*this, m_previews->align, cancelledAlignment(),
                               [this](PaintProject& project, AlignObjectAction action) {
                                   finishAlignObject(project, action);
                               });
}

} // namespace quillabrae::store
