// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/CanvasStage.h"
#include "replay/Pictures.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"

namespace quillabrae::replay {
namespace {

raster::RasterImage live(Session& session, const Arguments&) {
    const canvas::CanvasFrame frame = session.canvas().view().frame(1.0);
    if (frame.liveImage == nullptr) throw ScriptError(QStringLiteral("no gesture is drawing"));
    return *frame.liveImage;
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
