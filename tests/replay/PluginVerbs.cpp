// SPDX-License-Identifier: GPL-3.0-or-later
// Plugins: what is installed in this home, the command that runs one, and an effect alone.
#include "effects/PluginEffectService.h"
#include "effects/PluginLibraryError.h"
#include "effects/PluginLibraryService.h"
#include "replay/EngineArguments.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QJsonArray>

namespace quillabrae::replay {
namespace {

using effects::PluginLibraryService;

/// As the program finds it when it starts.
PluginLibraryService libraryOf(const Session& session) {
    return PluginLibraryService(PluginLibraryService::defaultInstallDirectory(session.paths()));
}

const effects::QuillabraePlugin& pluginFrom(const PluginLibraryService& library,
                                            const Arguments& arguments) {
    const QString id = arguments.text("plugin");
    const effects::QuillabraePlugin* const plugin = library.plugin(id);
    if (!plugin) throw ScriptError(QStringLiteral("no plugin has the id \"%1\"").arg(id));
    return *plugin;
}

QJsonValue applyPlugin(Session& session, const Arguments& arguments) {
    return session.store().applyPlugin(pluginFrom(libraryOf(session), arguments));
}

QJsonValue installed(Session& session, const Arguments&) {
    QJsonArray ids;
    for (const effects::QuillabraePlugin& plugin : libraryOf(session).installedPlugins())
        ids.append(plugin.id);
    return ids;
}

/// What came of installing or removing: null, or the error's description.
template <void (PluginLibraryService::*change)(const effects::QuillabraePlugin&)>
QJsonValue changed(Session& session, const Arguments& arguments) {
    PluginLibraryService library = libraryOf(session);
    try {
        (library.*change)(pluginFrom(library, arguments));
    } catch (const effects::PluginLibraryError& error) {
        return error.description();
    }
    return {};
}

QJsonValue apply(Session& session, const Arguments& arguments) {
    const QString name = arguments.text("effect");
    const auto effect = effects::pluginEffectFromRawText(name);
    if (!effect) throw ScriptError(QStringLiteral("no effect is called \"%1\"").arg(name));
    return pixelResult(
        session, arguments,
        effects::PluginEffectService::apply(*effect, imageFrom(session, arguments, "layer")));
}

constexpr Verb verbs[] = {
    {"store.applyPlugin", "plugin", applyPlugin},
    {"plugins.installed", "", installed},
    {"plugins.install", "plugin", changed<&PluginLibraryService::install>},
    {"plugins.uninstall", "plugin", changed<&PluginLibraryService::uninstall>},
    {"effects.apply", "effect layer to?", apply},
};

} // namespace

VerbTable pluginVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
