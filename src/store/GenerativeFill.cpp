// SPDX-License-Identifier: GPL-3.0-or-later
// Having the selected pixels painted by a remote service. The project may change while the answer
// is awaited; the picture goes to the project, layer and selection that it was asked for.
#include "effects/OpenAIImageEditService.h"
#include "effects/OpenAIKeychainService.h"
#include "persistence/ImageLoader.h"
#include "persistence/ProjectImageExportService.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceGenerativeMasks.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/GenerativeFillError.h"
#include "store/GenerativeFills.h"
#include "store/ProjectLayers.h"
#include "store/SelectionState.h"
#include "store/UsageReports.h"

#include <algorithm>
#include <new>
#include <utility>
#include <variant>

namespace quillabrae::store {
namespace {

using effects::GenerativeFillRequest;
using model::PaintProject;
using raster::RasterImage;
namespace Raster = raster::LayerRasterService;

RasterImage flattened(const PaintProject& project, bool withContext) {
    using persistence::ProjectImageExportService::Background;
    return persistence::ProjectImageExportService::render(
        project, withContext ? Background::white : Background::transparent);
}

std::optional<GenerativeFillInput> inputFor(const PaintProject& project,
                                            const GenerativeFillRequest& request) {
    const auto selection = activeSelection(project);
    if (!selection || !project.selectedLayer()) return std::nullopt;
    const double width = project.canvasWidth;
    const double height = project.canvasHeight;
    const bool withContext = request.providesCanvasContext;
    const RasterImage flat = flattened(project, withContext);
    const auto image = Raster::pngData(
        withContext ? flat : Raster::croppedPixels(flat, width, height, *selection));
    const auto mask = withContext
                          ? Raster::fullCanvasGenerativeEditMaskPNGData(*selection, width, height)
                          : Raster::generativeEditMaskPNGData(*selection, width, height);
    if (!image || !mask) return std::nullopt;
    return GenerativeFillInput{project.id, project.selectedLayerID, *selection, *image, *mask,
                               withContext};
}

/// Nothing also where there is not enough memory for it.
std::optional<RasterImage> pictureIn(const QByteArray& bytes) {
    try {
        return persistence::loadImage(bytes);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

/// The part of a returned picture that goes into the selection.
RasterImage replacement(const RasterImage& returned, const GenerativeFillInput& input,
                        const PaintProject& project) {
    if (!input.usesFullCanvasContext) return returned;
    const RasterImage cropped =
        Raster::croppedPixels(returned, project.canvasWidth, project.canvasHeight, input.selection);
    return cropped.isNull() ? returned : cropped;
}

} // namespace

QString description(GenerativeFillError error) {
    switch (error) {
        case GenerativeFillError::missingAPIKey:
            return ProjectStore::tr(
                "Add an OpenAI API key in Settings > Intelligence before using "
                "generative fill.");
        case GenerativeFillError::noSelection:
            return ProjectStore::tr("Select an area before using generative fill.");
        case GenerativeFillError::invalidGeneratedImage:
            return ProjectStore::tr("OpenAI returned image data that could not be decoded.");
        case GenerativeFillError::projectChanged:
            return ProjectStore::tr(
                "The active project changed before generative fill could be applied.");
        case GenerativeFillError::applyFailed:
            return ProjectStore::tr(
                "The generated pixels could not be applied to the selected area.");
    }
    return {};
}

bool ProjectStore::canGenerativeFill() const {
    const PaintProject* project = activeProject();
    return project && activeSelection(*project);
}

std::optional<GenerativeFillInput> ProjectStore::makeGenerativeFillInput(
    const GenerativeFillRequest& request) const {
    const PaintProject* project = activeProject();
    return project ? inputFor(*project, request) : std::nullopt;
}

ProjectStore::FillID ProjectStore::performGenerativeFill(const GenerativeFillRequest& request,
                                                         FillCompletion completion,
                                                         FillWatch watch) {
    const FillID id = ++m_fills->lastID;
    auto& fill = m_fills->waiting[id];
    fill = {
        request, makeGenerativeFillInput(request), std::move(completion), std::move(watch), nullptr,
        nullptr, m_environment.makeLatestWork()};
    if (const auto& services = m_environment.generativeFill)
        fill.key =
            services->keychain.beginLoading([this, id](const platform::SecretOutcome& outcome) {
                sendFill(id, effects::OpenAIKeychainService::keyIn(outcome));
            });
    else
        QMetaObject::invokeMethod(
            this, [this, id] { sendFill(id, std::nullopt); }, Qt::QueuedConnection);
    return id;
}

void ProjectStore::sendFill(FillID id, const std::optional<QString>& key) {
    const auto waiting = m_fills->waiting.find(id);
    if (waiting == m_fills->waiting.end()) return;
    GenerativeFills::Fill& fill = waiting->second;
    if (!key) return endFill(id, description(GenerativeFillError::missingAPIKey));
    if (!fill.input) return endFill(id, description(GenerativeFillError::noSelection));
    setStatusMessage(tr("Generating fill..."));
    auto exchange = m_environment.generativeFill->imageEdit.editImage(
        *key, fill.request, fill.input->imagePNGData, fill.input->maskPNGData,
        std::move(fill.watch), [this, id](const effects::ImageEditOutcome& outcome) {
            if (const auto* error = std::get_if<effects::OpenAIImageEditError>(&outcome))
                endFill(id, error->description);
            else
                decodeFill(id, std::get<QByteArray>(outcome));
        });
    // An answer may have come already.
    if (m_fills->waiting.contains(id)) fill.exchange = std::move(exchange);
}

void ProjectStore::cancelGenerativeFill(FillID id) {
    if (m_fills->take(id)) setStatusMessage(tr("Generative fill cancelled"));
}

void ProjectStore::decodeFill(FillID id, const QByteArray& bytes) {
    const auto waiting = m_fills->waiting.find(id);
    if (waiting == m_fills->waiting.end()) return;
    // A picture may take a while; the window goes on.
    waiting->second.decoding->run([this, id, bytes] {
        return [this, id, image = pictureIn(bytes)] {
            if (!m_fills->waiting.contains(id)) return;
            auto failure = std::optional(description(GenerativeFillError::invalidGeneratedImage));
            const auto apply = [&] { failure = applyFill(id, *image); };
            if (image && !attempt(tr("Generative fill"), apply))
                failure = tr("There is not enough memory");
            endFill(id, failure);
        };
    });
}

std::optional<QString> ProjectStore::applyFill(FillID id, const RasterImage& returned) {
    const GenerativeFills::Fill& fill = m_fills->waiting.at(id);
    const GenerativeFillInput& input = *fill.input;
    const auto index = indexOf(input.projectID);
    const auto layer = index ? layerIndex(m_openProjects[*index], input.layerID) : std::nullopt;
    if (!layer) return description(GenerativeFillError::projectChanged);
    PaintProject& project = m_openProjects[*index];
    if (!Raster::applyGeneratedImage(replacement(returned, input, project), project.layers[*layer],
                                     project.canvasWidth, project.canvasHeight, input.selection))
        return description(GenerativeFillError::applyFailed);
    project.isCanvasSelected = false;
    m_lastRepeatableAction = RepeatableActions::GenerativeFill{fill.request};
    const QUuid projectID = finishEdit(project);
    recordHistory(projectID, tr("Generative Fill"), QStringLiteral("sparkles"));
    setStatusMessage(tr("Applied generative fill"));
    report(m_environment, services::AppAnalyticsEvent::generativeFillCompleted);
    return std::nullopt;
}

void ProjectStore::endFill(FillID id, const std::optional<QString>& failure) {
    auto fill = m_fills->take(id);
    if (!fill) return;
    // It is still delivering what ends the fill.
    QMetaObject::invokeMethod(
        this, [work = std::shared_ptr(std::move(fill->decoding))] {}, Qt::QueuedConnection);
    if (failure)
        setStatusMessage(tr("Generative fill failed: %1").arg(*failure), StatusKind::failure);
    fill->completion(failure);
}

} // namespace quillabrae::store
