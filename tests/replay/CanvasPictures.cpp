// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/CanvasStage.h"
#include "replay/Pictures.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"

namespace quillabrae::replay {
namespace {

raster::RasterImage live(Session& session, const Arguments&) {
    const raster::RasterImage& image = session.canvas().view().drawing().liveDrawingImage();
    if (image.isNull()) throw ScriptError(QStringLiteral("no gesture is drawing"));
    return image;
}

raster::RasterImage canvasPicture(Session& session, const Arguments&) {
    return session.canvas().picture();
}

constexpr PictureSource sources[] = {
    {"live", live},
    {"canvas", canvasPicture},
};

} // namespace

std::span<const PictureSource> canvasPictures() {
    return sources;
}

} // namespace quillabrae::replay
