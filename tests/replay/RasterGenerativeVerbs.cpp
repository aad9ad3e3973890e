// SPDX-License-Identifier: GPL-3.0-or-later
// The engine alone: what goes to an image-edit service and comes back.
#include "raster/LayerRasterServiceGenerativeMasks.h"
#include "replay/EngineArguments.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

namespace Engine = raster::LayerRasterService;

model::PixelSelection selectionOf(const Session& session, const Arguments& arguments,
                                  const char* key) {
    const auto selection = selectionFrom(session, arguments, key);
    if (!selection)
        throw ScriptError(QStringLiteral("\"%1\" is a selection").arg(QLatin1StringView(key)));
    return *selection;
}

QJsonValue generativeEditMask(Session& session, const Arguments& arguments) {
    return pixelResult(session, arguments,
                       Engine::generativeEditMaskPNGData(selectionOf(session, arguments, "for"),
                                                         arguments.number("canvasWidth"),
                                                         arguments.number("canvasHeight")));
}

QJsonValue fullCanvasGenerativeEditMask(Session& session, const Arguments& arguments) {
    return pixelResult(session, arguments,
                       Engine::fullCanvasGenerativeEditMaskPNGData(
                           selectionOf(session, arguments, "for"), arguments.number("canvasWidth"),
                           arguments.number("canvasHeight")));
}

/// Writes the layer's pixels; the result is what the operation returns.
QJsonValue applyGeneratedImage(Session& session, const Arguments& arguments) {
    model::PaintLayer layer = layerFrom(session, arguments, "into");
    const bool isApplied = Engine::applyGeneratedImage(
        imageFrom(session, arguments, "image"), layer, arguments.number("canvasWidth"),
        arguments.number("canvasHeight"), selectionOf(session, arguments, "selection"));
    pixelResult(session, arguments, layer);
    return isApplied;
}

constexpr Verb verbs[] = {
    {"raster.generativeEditMaskPNGData", "for canvasWidth canvasHeight to?", generativeEditMask},
    {"raster.fullCanvasGenerativeEditMaskPNGData", "for canvasWidth canvasHeight to?",
     fullCanvasGenerativeEditMask},
    {"raster.applyGeneratedImage", "image into canvasWidth canvasHeight selection to?",
     applyGeneratedImage},
};

} // namespace

VerbTable rasterGenerativeVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
