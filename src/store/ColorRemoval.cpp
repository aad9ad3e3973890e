// SPDX-License-Identifier: GPL-3.0-or-later
// Taking a colour out of a layer, tried live and then kept or not. A try of a large layer takes a
// while, so it is made elsewhere: a reduced picture comes at once, the whole one when it is done.
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceColorRemoval.h"
#include "store/AdjustmentPreviews.h"
#include "store/Attempt.h"

#include <cmath>

namespace quillabrae::store {
namespace {

using model::PaintLayer;
using model::PaintProject;
namespace Raster = raster::LayerRasterService;

/// What a try needs to know, wherever it is made.
struct Try {
    PaintLayer layer;
    double canvasWidth = 1.0;
    double canvasHeight = 1.0;
    ColorRemovalSettings settings;
    model::ColorValue color;
};

bool removeColor(PaintLayer& layer, double width, double height, const Try& attempt) {
    return Raster::removeColor(layer, width, height, attempt.color,
                               attempt.settings.tolerancePercentage,
                               attempt.settings.transparentAlphaThresholdPercentage);
}

/// The layer without the colour; nothing where the colour is not on it.
std::optional<PaintLayer> wholeResult(const Try& attempt) {
    PaintLayer layer = attempt.layer;
    if (!removeColor(layer, attempt.canvasWidth, attempt.canvasHeight, attempt))
        return std::nullopt;
    return layer;
}

/// A picture of so few pixels is done at once, whatever the machine has to do besides.
constexpr double coarsePixels = 400'000.0;

double reductionOf(const Try& attempt) {
    return std::ceil(std::sqrt(attempt.canvasWidth * attempt.canvasHeight / coarsePixels));
}

/// The same of a picture with every so-manieth pixel alone. A layer may hold a picture smaller than
/// the canvas: it is shown stretched.
std::optional<PaintLayer> coarseResult(const Try& attempt) {
    const double reduction = reductionOf(attempt);
    const double width = std::ceil(attempt.canvasWidth / reduction);
    const double height = std::ceil(attempt.canvasHeight / reduction);
    PaintLayer layer = attempt.layer;
    layer.bitmapPNGData = Raster::pngData(Raster::copyImage(
        Raster::renderLayer(layer, attempt.canvasWidth, attempt.canvasHeight), width, height));
    if (!removeColor(layer, width, height, attempt)) return std::nullopt;
    return layer;
}

QString removalName() {
    return ProjectStore::tr("Color removal");
}

QString previewedRemoval() {
    return ProjectStore::tr("Previewing color removal");
}
QString cancelledRemoval() {
    return ProjectStore::tr("Color removal cancelled");
}
QString nothingToRemove() {
    return ProjectStore::tr("No matching color found");
}

} // namespace

bool ProjectStore::applyColorRemoval(const ColorRemovalSettings& settings, AdjustmentRun run) {
    return Attempt::run(*this, removalName(), [&]() -> bool {
        PaintLayer* layer = AdjustmentPreviews::layerToAdjust(*this);
        if (!layer) return false;
        PaintProject& project = *projectToEdit();
        const auto result = wholeResult({*layer, project.canvasWidth, project.canvasHeight,
                                         settings, colorOf(settings.preset, m_settings)});
        if (!result) {
            setStatusMessage(nothingToRemove());
            return false;
        }
        *layer = *result;
        if (run == AdjustmentRun::recorded)
            finishColorRemoval(project, settings);
        else
            AdjustmentPreviews::show(*this, project, run, previewedRemoval());
        return true;
    });
}

void ProjectStore::finishColorRemoval(PaintProject& project, const ColorRemovalSettings& settings) {
    AdjustmentPreviews::finish(
        *this, project,
        {RepeatableActions::ColorRemoval{settings}, tr("Removed %1").arg(title(settings.preset)),
         tr("Color Removal"), QStringLiteral("eraser.line.dashed")});
}

void ProjectStore::beginColorRemovalPreview() {
    if (!hasActiveProject()) return;
    m_previews->dropWork();
    AdjustmentPreviews::begin(*this, m_previews->colorRemoval);
}

void ProjectStore::previewColorRemoval(const ColorRemovalSettings& settings) {
    AdjustmentPreviews& previews = *m_previews;
    if (!previews.colorRemoval.original) return;
    const PaintProject& original = *previews.colorRemoval.original;
    const PaintLayer* layer = original.selectedLayer();
    if (!indexOf(original.id) || !layer || layer->isLocked) {
        previews.dropWork();
        previews.colorRemoval.choice.reset();
        restoreOriginal(original);
        if (layer && layer->isLocked) setStatusMessage(tr("Selected layer is locked"));
        return;
    }
    const auto attempt =
        std::make_shared<const Try>(Try{*layer, original.canvasWidth, original.canvasHeight,
                                        settings, colorOf(settings.preset, m_settings)});
    const int number = ++previews.attempts;
    const auto makeWhole = [this, attempt, number] {
        m_previews->wholeWork->run(attempted(removalName(), [this, attempt, number] {
            return [this, attempt, number, layer = wholeResult(*attempt)] {
                if (number == m_previews->attempts) showColorRemoval(attempt->settings, layer);
            };
        }));
    };
    if (reductionOf(*attempt) <= 1.0) return makeWhole();
    previews.coarseWork->run(attempted(removalName(), [this, attempt, number, makeWhole] {
        return [this, number, makeWhole, layer = coarseResult(*attempt)] {
            if (layer) showTry(*layer);
            if (number == m_previews->attempts) makeWhole();
        };
    }));
}

void ProjectStore::showTry(const PaintLayer& layer) {
    restoreOriginal(*m_previews->colorRemoval.original, &layer);
}

void ProjectStore::showColorRemoval(const ColorRemovalSettings& settings,
                                    const std::optional<PaintLayer>& result) {
    m_previews->colorRemoval.choice = result ? std::optional(settings) : std::nullopt;
    if (result)
        showTry(*result);
    else
        restoreOriginal(*m_previews->colorRemoval.original);
    setStatusMessage(result ? previewedRemoval() : nothingToRemove());
}

std::optional<ColorRemovalSettings> ProjectStore::colorRemovalPreviewSettings() const {
    return m_previews->colorRemoval.choice;
}

void ProjectStore::cancelColorRemovalPreview() {
    m_previews->dropWork();
    AdjustmentPreviews::cancel(*this, m_previews->colorRemoval, cancelledRemoval());
}

void ProjectStore::commitColorRemovalPreview() {
    m_previews->finishWork();
    AdjustmentPreviews::commit(*this, m_previews->colorRemoval, cancelledRemoval(),
                               [this](PaintProject& project, const ColorRemovalSettings& settings) {
                                   finishColorRemoval(project, settings);
                               });
}

} // namespace quillabrae::store
