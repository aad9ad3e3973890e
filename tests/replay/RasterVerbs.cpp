// SPDX-License-Identifier: GPL-3.0-or-later
// The engine alone: surfaces and strokes. Its other families have files of their own.
#include "raster/LayerRasterService.h"
#include "replay/EngineArguments.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

namespace Engine = raster::LayerRasterService;

QJsonValue transparentImage(Session& session, const Arguments& arguments) {
    return pixelResult(
        session, arguments,
        Engine::transparentImage(arguments.number("width"), arguments.number("height")));
}

QJsonValue pixelAlignedRect(Session&, const Arguments& arguments) {
    return rectResult(Engine::pixelAlignedRect(rectFrom(arguments, "rect"),
                                               arguments.number("canvasWidth"),
                                               arguments.number("canvasHeight")));
}

QJsonValue renderLayer(Session& session, const Arguments& arguments) {
    return pixelResult(
        session, arguments,
        Engine::renderLayer(layerFrom(session, arguments, "layer"), arguments.number("canvasWidth"),
                            arguments.number("canvasHeight")));
}

QJsonValue flatten(Session& session, const Arguments& arguments) {
    model::PaintLayer lower = layerFrom(session, arguments, "into");
    Engine::flatten(layerFrom(session, arguments, "layer"), lower, arguments.number("canvasWidth"),
                    arguments.number("canvasHeight"));
    return pixelResult(session, arguments, lower);
}

QJsonValue bakeImage(Session& session, const Arguments& arguments) {
    const Arguments form(objectFrom(arguments.value("image"), QStringLiteral("image")));
    const model::PaintImage image{{},
                                  bytesFrom(session, form, "path").value_or(model::PngBytes()),
                                  form.number("x"),
                                  form.number("y"),
                                  form.number("width"),
                                  form.number("height")};
    model::PaintLayer layer = layerFrom(session, arguments, "into");
    Engine::bakeImage(image, layer, arguments.number("canvasWidth"),
                      arguments.number("canvasHeight"));
    return pixelResult(session, arguments, layer);
}

QJsonValue copyImage(Session& session, const Arguments& arguments) {
    return pixelResult(session, arguments,
                       Engine::copyImage(imageFrom(session, arguments, "image"),
                                         arguments.number("width"), arguments.number("height")));
}

QJsonValue resizedCopy(Session& session, const Arguments& arguments) {
    return pixelResult(session, arguments,
                       Engine::resizedCopy(imageFrom(session, arguments, "from"),
                                           arguments.number("width"), arguments.number("height")));
}

QJsonValue solidColorPNGData(Session& session, const Arguments& arguments) {
    return pixelResult(
        session, arguments,
        Engine::solidColorPNGData(arguments.number("width"), arguments.number("height"),
                                  colorFrom(arguments, "color")));
}

/// A layer is rendered, drawn on and written, as a finished gesture does it.
QJsonValue drawStroke(Session& session, const Arguments& arguments) {
    const double width = arguments.number("canvasWidth");
    const double height = arguments.number("canvasHeight");
    raster::RasterImage image =
        Engine::renderLayer(layerFrom(session, arguments, "on"), width, height);
    Engine::drawStroke(strokeFrom(arguments, "stroke"), image, width, height);
    return pixelResult(session, arguments, image);
}

constexpr Verb verbs[] = {
    {"raster.transparentImage", "width height to?", transparentImage},
    {"raster.pixelAlignedRect", "rect canvasWidth canvasHeight", pixelAlignedRect},
    {"raster.renderLayer", "layer canvasWidth canvasHeight to?", renderLayer},
    {"raster.flatten", "layer into canvasWidth canvasHeight to?", flatten},
    {"raster.bakeImage", "image into canvasWidth canvasHeight to?", bakeImage},
    {"raster.copyImage", "image width height to?", copyImage},
    {"raster.resizedCopy", "from width height to?", resizedCopy},
    {"raster.solidColorPNGData", "width height color to?", solidColorPNGData},
    {"raster.drawStroke", "stroke on canvasWidth canvasHeight to?", drawStroke},
};

} // namespace

VerbTable rasterVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
