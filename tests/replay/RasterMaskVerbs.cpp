// SPDX-License-Identifier: GPL-3.0-or-later
// The engine alone: the masks of selections, and regions of similar colour.
#include "raster/LayerRasterServiceMasks.h"
#include "raster/LayerRasterServiceRegions.h"
#include "replay/EngineArguments.h"
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QJsonArray>

#include <vector>

namespace quillabrae::replay {
namespace {

namespace Engine = raster::LayerRasterService;

model::SelectionCombineOperation operationFrom(const Arguments& arguments) {
    const QString name = arguments.text("operation");
    if (name == QLatin1StringView("add")) return model::SelectionCombineOperation::add;
    if (name == QLatin1StringView("subtract")) return model::SelectionCombineOperation::subtract;
    throw ScriptError(QStringLiteral("\"operation\" is \"add\" or \"subtract\""));
}

model::PixelSelection givenSelection(const Session& session, const Arguments& arguments,
                                     const char* key) {
    const std::optional<model::PixelSelection> selection = selectionFrom(session, arguments, key);
    if (!selection) throw ScriptError(QStringLiteral("null is no selection"));
    return *selection;
}

model::CanvasPoint canvasPoint(const QPointF& point) {
    return {point.x(), point.y()};
}

QJsonValue ellipseSelectionMask(Session& session, const Arguments& arguments) {
    return pixelResult(
        session, arguments,
        Engine::ellipseSelectionMask(arguments.number("width"), arguments.number("height")));
}

QJsonValue lassoSelectionMask(Session& session, const Arguments& arguments) {
    std::vector<model::CanvasPoint> points;
    const QJsonArray list = arrayFrom(arguments.value("points"), QStringLiteral("points"));
    for (const auto& item : list)
        points.push_back(canvasPoint(pointFrom(item, QStringLiteral("points"))));
    return pixelResult(session, arguments,
                       Engine::lassoSelectionMask(points, rectFrom(arguments, "bounds")));
}

QJsonValue combinedSelection(Session& session, const Arguments& arguments) {
    return selectionResult(session, arguments,
                           Engine::combinedSelection(givenSelection(session, arguments, "first"),
                                                     givenSelection(session, arguments, "second"),
                                                     operationFrom(arguments)));
}

QJsonValue magicWandSelection(Session& session, const Arguments& arguments) {
    return selectionResult(session, arguments,
                           Engine::magicWandSelection(
                               layerFrom(session, arguments, "in"), arguments.number("canvasWidth"),
                               arguments.number("canvasHeight"), canvasPoint(arguments.point("at")),
                               arguments.number("matchPercentage")));
}

/// Whether the layer was filled; its pixels go to the file either way.
QJsonValue fillSimilarPixels(Session& session, const Arguments& arguments) {
    model::PaintLayer layer = layerFrom(session, arguments, "in");
    const bool isFilled = Engine::fillSimilarPixels(
        layer, arguments.number("canvasWidth"), arguments.number("canvasHeight"),
        canvasPoint(arguments.point("at")), colorFrom(arguments, "color"),
        arguments.number("matchPercentage"));
    pixelResult(session, arguments, layer);
    return isFilled;
}

QJsonValue color(Session& session, const Arguments& arguments) {
    const std::optional<model::ColorValue> picked =
        Engine::color(layerFrom(session, arguments, "in"), arguments.number("canvasWidth"),
                      arguments.number("canvasHeight"), canvasPoint(arguments.point("at")));
    return picked ? toJson(*picked) : QJsonValue();
}

constexpr Verb verbs[] = {
    {"raster.ellipseSelectionMask", "width height to?", ellipseSelectionMask},
    {"raster.lassoSelectionMask", "points bounds to?", lassoSelectionMask},
    {"raster.combinedSelection", "first second operation to?", combinedSelection},
    {"raster.magicWandSelection", "in canvasWidth canvasHeight at matchPercentage to?",
     magicWandSelection},
    {"raster.fillSimilarPixels", "in canvasWidth canvasHeight at color matchPercentage to?",
     fillSimilarPixels},
    {"raster.color", "in canvasWidth canvasHeight at", color},
};

} // namespace

VerbTable rasterMaskVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
