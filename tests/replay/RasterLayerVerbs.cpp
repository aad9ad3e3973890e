// SPDX-License-Identifier: GPL-3.0-or-later
// The engine alone: edits of one layer's pixels, and colour removal. What an edit returns is the
// line's result; the layer's pixels after it are written to the file of "to".
#include "raster/LayerRasterServiceColorRemoval.h"
#include "raster/LayerRasterServiceLayers.h"
#include "replay/EngineArguments.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QJsonArray>

#include <array>

namespace quillabrae::replay {
namespace {

namespace Engine = raster::LayerRasterService;

struct Canvas {
    explicit Canvas(const Arguments& arguments)
        : width(arguments.number("canvasWidth")), height(arguments.number("canvasHeight")) {}

    double width;
    double height;
};

model::PixelSelection neededSelection(const Session& session, const Arguments& arguments) {
    const auto selection = selectionFrom(session, arguments, "selection");
    if (!selection) throw ScriptError(QStringLiteral("\"selection\" must not be null"));
    return *selection;
}

/// Runs `edit(layer, canvas)` on the layer of that key.
template <typename Edit>
QJsonValue edited(Session& session, const Arguments& arguments, const char* key, Edit edit) {
    model::PaintLayer layer = layerFrom(session, arguments, key);
    const bool isChanged = edit(layer, Canvas(arguments));
    if (arguments.has("to")) pixelResult(session, arguments, layer);
    return isChanged;
}

/// One of a list of names, as its place in it.
template <std::size_t count>
int placeOf(const Arguments& arguments, const char* key,
            const std::array<const char*, count>& names) {
    const QString text = arguments.text(key);
    for (std::size_t i = 0; i < count; ++i) {
        if (text == QLatin1StringView(names[i])) return static_cast<int>(i);
    }
    throw ScriptError(
        QStringLiteral("\"%1\": unknown value \"%2\"").arg(QLatin1StringView(key), text));
}

QJsonValue invertColors(Session& session, const Arguments& arguments) {
    return edited(session, arguments, "in", [&](model::PaintLayer& layer, Canvas canvas) {
        return Engine::invertColors(layer, canvas.width, canvas.height,
                                    selectionFrom(session, arguments, "selection"));
    });
}

/// Of a layer under "from", or of an image under "image", whose mask is not asked.
QJsonValue croppedPixels(Session& session, const Arguments& arguments) {
    const Canvas canvas(arguments);
    const model::PixelSelection selection = neededSelection(session, arguments);
    if (arguments.has("image"))
        return pixelResult(session, arguments,
                           Engine::croppedPixels(imageFrom(session, arguments, "image"),
                                                 canvas.width, canvas.height, selection));
    return pixelResult(session, arguments,
                       Engine::croppedPixels(layerFrom(session, arguments, "from"), canvas.width,
                                             canvas.height, selection));
}

QJsonValue clearLayerPixels(Session& session, const Arguments& arguments) {
    const Canvas canvas(arguments);
    model::PaintLayer layer = layerFrom(session, arguments, "layer");
    Engine::clearLayerPixels(layer, canvas.width, canvas.height,
                             neededSelection(session, arguments));
    return pixelResult(session, arguments, layer);
}

QJsonValue clearedPixels(Session& session, const Arguments& arguments) {
    const Canvas canvas(arguments);
    return pixelResult(session, arguments,
                       Engine::clearedPixels(imageFrom(session, arguments, "image"), canvas.width,
                                             canvas.height, neededSelection(session, arguments)));
}

QJsonValue flipLayerPixels(Session& session, const Arguments& arguments) {
    const auto axis = arguments.boolean("horizontal") ? raster::MirrorAxis::horizontal
                                                      : raster::MirrorAxis::vertical;
    return edited(session, arguments, "in", [&](model::PaintLayer& layer, Canvas canvas) {
        return Engine::flipLayerPixels(layer, canvas.width, canvas.height,
                                       selectionFrom(session, arguments, "selection"), axis);
    });
}

QJsonValue opaquePixelBounds(Session& session, const Arguments& arguments) {
    const auto bounds = Engine::opaquePixelBounds(imageFrom(session, arguments, "in"),
                                                  rectFrom(arguments, "targetRect"));
    return bounds ? rectResult(*bounds) : QJsonValue();
}

QJsonValue moveOpaquePixels(Session& session, const Arguments& arguments) {
    return edited(session, arguments, "in", [&](model::PaintLayer& layer, Canvas canvas) {
        return Engine::moveOpaquePixels(layer, canvas.width, canvas.height,
                                        rectFrom(arguments, "block"), arguments.point("place"));
    });
}

QJsonValue alignOpaquePixels(Session& session, const Arguments& arguments) {
    constexpr std::array horizontal{"keep", "left", "center", "right"};
    constexpr std::array vertical{"keep", "top", "middle", "bottom"};
    return edited(session, arguments, "in", [&](model::PaintLayer& layer, Canvas canvas) {
        return Engine::alignOpaquePixels(layer, canvas.width, canvas.height,
                                         rectFrom(arguments, "targetRect"),
                                         static_cast<Engine::AlignHorizontalTarget>(
                                             placeOf(arguments, "horizontalTarget", horizontal)),
                                         static_cast<Engine::AlignVerticalTarget>(
                                             placeOf(arguments, "verticalTarget", vertical)));
    });
}

QJsonValue rotateZoomLayerPixels(Session& session, const Arguments& arguments) {
    return edited(session, arguments, "in", [&](model::PaintLayer& layer, Canvas canvas) {
        return Engine::rotateZoomLayerPixels(
            layer, canvas.width, canvas.height, selectionFrom(session, arguments, "selection"),
            arguments.number("angleDegrees"), arguments.number("zoomPercentage"));
    });
}

QJsonValue transformedImage(Session& session, const Arguments& arguments) {
    const Canvas canvas(arguments);
    return pixelResult(session, arguments,
                       Engine::transformedImage(imageFrom(session, arguments, "from"), canvas.width,
                                                canvas.height, rectFrom(arguments, "targetRect")));
}

QJsonValue compositedTransformedImage(Session& session, const Arguments& arguments) {
    const Canvas canvas(arguments);
    return pixelResult(
        session, arguments,
        Engine::compositedTransformedImage(imageFrom(session, arguments, "from"),
                                           imageFrom(session, arguments, "over"), canvas.width,
                                           canvas.height, rectFrom(arguments, "targetRect")));
}

QJsonValue removeColor(Session& session, const Arguments& arguments) {
    return edited(session, arguments, "from", [&](model::PaintLayer& layer, Canvas canvas) {
        return Engine::removeColor(layer, canvas.width, canvas.height,
                                   colorFrom(arguments, "targetColor"),
                                   arguments.number("tolerancePercentage"),
                                   arguments.number("transparentAlphaThresholdPercentage"));
    });
}

constexpr Verb verbs[] = {
    {"raster.invertColors", "in canvasWidth canvasHeight selection? to?", invertColors},
    {"raster.croppedPixels", "from? image? canvasWidth canvasHeight selection to?", croppedPixels},
    {"raster.clearLayerPixels", "layer canvasWidth canvasHeight selection to?", clearLayerPixels},
    {"raster.clearedPixels", "image canvasWidth canvasHeight selection to?", clearedPixels},
    {"raster.flipLayerPixels", "in canvasWidth canvasHeight selection? horizontal to?",
     flipLayerPixels},
    {"raster.opaquePixelBounds", "in targetRect", opaquePixelBounds},
    {"raster.moveOpaquePixels", "in canvasWidth canvasHeight block place to?", moveOpaquePixels},
    {"raster.alignOpaquePixels",
     "in canvasWidth canvasHeight targetRect horizontalTarget verticalTarget to?",
     alignOpaquePixels},
    {"raster.rotateZoomLayerPixels",
     "in canvasWidth canvasHeight selection? angleDegrees zoomPercentage to?",
     rotateZoomLayerPixels},
    {"raster.transformedImage", "from canvasWidth canvasHeight targetRect to?", transformedImage},
    {"raster.compositedTransformedImage", "from over canvasWidth canvasHeight targetRect to?",
     compositedTransformedImage},
    {"raster.removeColor",
     "from canvasWidth canvasHeight targetColor tolerancePercentage "
     "transparentAlphaThresholdPercentage to?",
     removeColor},
};

} // namespace

VerbTable rasterLayerVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
