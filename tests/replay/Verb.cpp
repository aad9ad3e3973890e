// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/Verb.h"

#include "replay/ScriptError.h"

#include <QStringList>

namespace quillabrae::replay {

std::span<VerbTable (*const)()> verbFamilies() {
    static constexpr VerbTable (*families[])() = {
        storeProjectVerbs,   storeFileVerbs,   storeLayerVerbs,
        storeSelectionVerbs, editVerbs,        promptVerbs,
        lookVerbs,           controlVerbs,     faultVerbs,
        canvasVerbs,         draftVerbs,       rasterVerbs,
        rasterMaskVerbs,     rasterLayerVerbs, rasterGenerativeVerbs,
        rasterTextVerbs,     intakeVerbs,      adjustmentVerbs,
        generativeFillVerbs, pluginVerbs,
    };
    return families;
}

const Verb* findVerb(const QString& name) {
    for (const auto family : verbFamilies()) {
        for (const Verb& verb : family()) {
            if (name == QLatin1StringView(verb.name)) return &verb;
        }
    }
    return nullptr;
}

void checkKeys(const Verb& verb, const QJsonObject& line) {
    QStringList known = {QStringLiteral("do")};
    bool takesAny = false;
    const QStringList keys =
        QString::fromLatin1(verb.keys).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString key : keys) {
        if (key == QLatin1StringView("...")) {
            takesAny = true;
            continue;
        }
        const bool isOptional = key.endsWith(QLatin1Char('?'));
        if (isOptional) key.chop(1);
        if (!isOptional && !line.contains(key))
            throw ScriptError(
                QStringLiteral("%1 needs the key \"%2\"").arg(QLatin1StringView(verb.name), key));
        known.append(key);
    }
    for (const QString& key : line.keys()) {
        if (!takesAny && !known.contains(key))
            throw ScriptError(
                QStringLiteral("%1 has no key \"%2\"").arg(QLatin1StringView(verb.name), key));
    }
}

} // namespace quillabrae::replay
