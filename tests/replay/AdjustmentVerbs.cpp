// SPDX-License-Identifier: GPL-3.0-or-later
// Aligning, colour removal, their live previews, and the command that runs the last one again.
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

template <void (store::ProjectStore::*operation)()>
QJsonValue plain(Session& session, const Arguments&) {
    (session.store().*operation)();
    return {};
}

store::AlignObjectAction actionFrom(const Arguments& arguments) {
    const QString text = arguments.text("action");
    const auto action = store::alignObjectActionFromRawText(text);
    if (!action) throw ScriptError(QStringLiteral("no alignment is called \"%1\"").arg(text));
    return *action;
}

store::ColorRemovalSettings settingsFrom(const Arguments& arguments) {
    const Arguments form(objectFrom(arguments.value("settings"), QStringLiteral("settings")));
    const auto preset = store::colorRemovalPresetFromRawText(form.text("preset"));
    if (!preset)
        throw ScriptError(QStringLiteral("no preset is called \"%1\"").arg(form.text("preset")));
    return {form.number("tolerancePercentage"), form.number("transparentAlphaThresholdPercentage"),
            *preset};
}

store::AdjustmentRun runFrom(const Arguments& arguments) {
    if (arguments.boolean("recordsHistory")) return store::AdjustmentRun::recorded;
    return arguments.boolean("isPreview") ? store::AdjustmentRun::preview
                                          : store::AdjustmentRun::silent;
}

QJsonValue applyAlignObject(Session& session, const Arguments& arguments) {
    return session.store().applyAlignObject(actionFrom(arguments), runFrom(arguments));
}

QJsonValue previewAlignObject(Session& session, const Arguments& arguments) {
    return session.store().previewAlignObject(actionFrom(arguments));
}

QJsonValue applyColorRemoval(Session& session, const Arguments& arguments) {
    return session.store().applyColorRemoval(settingsFrom(arguments), runFrom(arguments));
}

QJsonValue previewColorRemoval(Session& session, const Arguments& arguments) {
    session.store().previewColorRemoval(settingsFrom(arguments));
    return {};
}

using Store = store::ProjectStore;

constexpr Verb verbs[] = {
    {"store.applyAlignObject", "action recordsHistory isPreview", applyAlignObject},
    {"store.beginAlignObjectPreview", "", plain<&Store::beginAlignObjectPreview>},
    {"store.restoreAlignPreviewOriginal", "", plain<&Store::restoreAlignPreviewOriginal>},
    {"store.previewAlignObject", "action", previewAlignObject},
    {"store.cancelAlignObjectPreview", "", plain<&Store::cancelAlignObjectPreview>},
    {"store.commitAlignObjectPreview", "", plain<&Store::commitAlignObjectPreview>},
    {"store.applyColorRemoval", "settings recordsHistory isPreview", applyColorRemoval},
    {"store.beginColorRemovalPreview", "", plain<&Store::beginColorRemovalPreview>},
    {"store.previewColorRemoval", "settings", previewColorRemoval},
    {"store.cancelColorRemovalPreview", "", plain<&Store::cancelColorRemovalPreview>},
    {"store.commitColorRemovalPreview", "", plain<&Store::commitColorRemovalPreview>},
    {"store.repeatLastAction", "", plain<&Store::repeatLastAction>},
};

} // namespace

VerbTable adjustmentVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
