// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/Pictures.h"

#include "persistence/ProjectImageExportService.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"
#include "replay/ScriptError.h"
#include "replay/ScriptImages.h"
#include "replay/Session.h"

namespace quillabrae::replay {
namespace {

using raster::RasterImage;

RasterImage layer(Session& session, const Arguments& arguments) {
    const model::PaintProject& project = session.activeProject();
    const int index = arguments.integer("index");
    if (index < 0 || index >= static_cast<int>(project.layers.size()))
        throw ScriptError(QStringLiteral("no layer at index %1").arg(index));
    return raster::LayerRasterService::renderLayer(project.layers[static_cast<std::size_t>(index)],
                                                   project.canvasWidth, project.canvasHeight);
}

RasterImage mask(Session& session, const Arguments&) {
    const auto& selection = session.activeProject().pixelSelection;
    if (!selection || !selection->maskPNGData)
        throw ScriptError(QStringLiteral("the selection has no mask"));
    return raster::decodedImage(*selection->maskPNGData);
}

RasterImage floating(Session& session, const Arguments&) {
    const auto& pixels = session.activeProject().floatingSelection;
    if (!pixels) throw ScriptError(QStringLiteral("no pixels are floating"));
    return raster::decodedImage(pixels->pngData);
}

RasterImage flattened(Session& session, const Arguments&) {
    return persistence::ProjectImageExportService::render(
        session.activeProject(), persistence::ProjectImageExportService::Background::transparent);
}

RasterImage file(Session& session, const Arguments& arguments) {
    return raster::decodePng(fileBytes(session, arguments.text("path")));
}

constexpr PictureSource sources[] = {
    {"layer", layer},         {"mask", mask}, {"floating", floating},
    {"flattened", flattened}, {"file", file},
};

} // namespace

std::span<const PictureSource> projectPictures() {
    return sources;
}

RasterImage pictureNamedBy(Session& session, const Arguments& arguments) {
    const QString name = arguments.text("of");
    for (const auto family : {projectPictures, canvasPictures}) {
        for (const PictureSource& source : family()) {
            if (name != QLatin1StringView(source.name)) continue;
            RasterImage image = source.picture(session, arguments);
            if (image.isNull()) throw ScriptError(QStringLiteral("the %1 is empty").arg(name));
            return image;
        }
    }
    throw ScriptError(QStringLiteral("no picture is called \"%1\"").arg(name));
}

} // namespace quillabrae::replay
