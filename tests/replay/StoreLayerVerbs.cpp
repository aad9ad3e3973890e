// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of the store on the active project's layers.
#include "replay/JsonForms.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

QJsonValue addLayer(Session& session, const Arguments&) {
    session.store().addLayer();
    return {};
}

QJsonValue deleteSelectedLayer(Session& session, const Arguments&) {
    session.store().deleteSelectedLayer();
    return {};
}

QJsonValue duplicateSelectedLayer(Session& session, const Arguments&) {
    session.store().duplicateSelectedLayer();
    return {};
}

QJsonValue moveSelectedLayer(Session& session, const Arguments& arguments) {
    session.store().moveSelectedLayer(arguments.integer("by"));
    return {};
}

QJsonValue flattenLayerDown(Session& session, const Arguments& arguments) {
    session.store().flattenLayerDown(
        session.layerID(arguments.value("layerID"), QStringLiteral("layerID")));
    return {};
}

QJsonValue importLayerFromFile(Session& session, const Arguments&) {
    session.store().importLayerFromFile();
    return {};
}

QJsonValue selectedLayerForProperties(Session& session, const Arguments&) {
    const auto layer = session.store().selectedLayerForProperties();
    return layer ? toJson(*layer) : QJsonValue();
}

QJsonValue applySelectedLayerProperties(Session& session, const Arguments& arguments) {
    const Arguments result(objectFrom(arguments.value("result"), QStringLiteral("result")));
    session.store().applySelectedLayerProperties({result.text("name"), result.number("opacity"),
                                                  result.boolean("isVisible"),
                                                  result.boolean("isLocked")});
    return {};
}

constexpr Verb verbs[] = {
    {"store.addLayer", "", addLayer},
    {"store.deleteSelectedLayer", "", deleteSelectedLayer},
    {"store.duplicateSelectedLayer", "", duplicateSelectedLayer},
    {"store.moveSelectedLayer", "by", moveSelectedLayer},
    {"store.flattenLayerDown", "layerID", flattenLayerDown},
    {"store.importLayerFromFile", "", importLayerFromFile},
    {"store.selectedLayerForProperties", "", selectedLayerForProperties},
    {"store.applySelectedLayerProperties", "result", applySelectedLayerProperties},
};

} // namespace

VerbTable storeLayerVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
