// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of the store on the selection, the selected layer's pixels and the canvas.
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

QJsonValue commitFloatingSelection(Session& session, const Arguments& arguments) {
    const int index = arguments.integer("projectIndex");
    if (index < 0) throw ScriptError(QStringLiteral("\"projectIndex\" must not be negative"));
    return session.store().commitFloatingSelectionIfNeeded(static_cast<std::size_t>(index),
                                                           arguments.boolean("recordsHistory")
                                                               ? store::HistoryRecording::recorded
                                                               : store::HistoryRecording::omitted);
}

QJsonValue selectAllCanvas(Session& session, const Arguments&) {
    session.store().selectAllCanvas();
    return {};
}

QJsonValue dropSelection(Session& session, const Arguments&) {
    session.store().dropSelection();
    return {};
}

QJsonValue canDropSelection(Session& session, const Arguments&) {
    return session.store().canDropSelection();
}

QJsonValue copySelectedCanvasPixels(Session& session, const Arguments&) {
    return session.store().copySelectedCanvasPixels();
}

QJsonValue cutSelectedCanvasPixels(Session& session, const Arguments&) {
    return session.store().cutSelectedCanvasPixels();
}

store::ResizeDialogResult resizeFrom(const Arguments& arguments) {
    const Arguments to(objectFrom(arguments.value("to"), QStringLiteral("to")));
    const QString anchorText = to.text("anchor", QStringLiteral("center"));
    const auto anchor = model::canvasAnchorFromRawText(anchorText);
    if (!anchor) throw ScriptError(QStringLiteral("unknown anchor \"%1\"").arg(anchorText));
    return {to.number("width"), to.number("height"),
            to.number("resolutionDPI", model::defaultResolutionDPI), *anchor};
}

QJsonValue resizeActiveImage(Session& session, const Arguments& arguments) {
    session.store().resizeActiveImage(resizeFrom(arguments));
    return {};
}

QJsonValue resizeActiveCanvas(Session& session, const Arguments& arguments) {
    session.store().resizeActiveCanvas(resizeFrom(arguments));
    return {};
}

QJsonValue trimTransparentWhitespace(Session& session, const Arguments&) {
    session.store().trimTransparentWhitespace();
    return {};
}

QJsonValue invertActiveImage(Session& session, const Arguments&) {
    session.store().invertActiveImage();
    return {};
}

QJsonValue flipSelectedLayer(Session& session, const Arguments& arguments) {
    session.store().flipSelectedLayer(arguments.boolean("horizontal")
                                          ? store::FlipDirection::horizontal
                                          : store::FlipDirection::vertical);
    return {};
}

QJsonValue rotateZoomSelectedLayer(Session& session, const Arguments& arguments) {
    const Arguments result(objectFrom(arguments.value("result"), QStringLiteral("result")));
    session.store().rotateZoomSelectedLayer(
        {result.number("angleDegrees"), result.number("zoomPercentage")});
    return {};
}

constexpr Verb verbs[] = {
    {"store.commitFloatingSelectionIfNeeded", "projectIndex recordsHistory",
     commitFloatingSelection},
    {"store.selectAllCanvas", "", selectAllCanvas},
    {"store.dropSelection", "", dropSelection},
    {"store.canDropSelection", "", canDropSelection},
    {"store.copySelectedCanvasPixels", "", copySelectedCanvasPixels},
    {"store.cutSelectedCanvasPixels", "", cutSelectedCanvasPixels},
    {"store.resizeActiveImage", "to", resizeActiveImage},
    {"store.resizeActiveCanvas", "to", resizeActiveCanvas},
    {"store.trimTransparentWhitespace", "", trimTransparentWhitespace},
    {"store.invertActiveImage", "", invertActiveImage},
    {"store.flipSelectedLayer", "horizontal", flipSelectedLayer},
    {"store.rotateZoomSelectedLayer", "result", rotateZoomSelectedLayer},
};

} // namespace

VerbTable storeSelectionVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
