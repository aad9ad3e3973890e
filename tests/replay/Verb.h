// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "replay/Arguments.h"

#include <QJsonValue>

#include <span>

namespace quillabrae::replay {

class Session;

/// One row of the language: a value of "do", the keys that go with it, and what it does.
struct Verb {
    const char* name;
    /// The keys, with spaces between; a key that may be absent ends in "?". "..." lets every
    /// other key pass, for a verb that reads the line itself.
    const char* keys;
    /// Returns what the line prints as its result. Throws ScriptError.
    QJsonValue (*run)(Session&, const Arguments&);
};

using VerbTable = std::span<const Verb>;

// One family a source file; a new family is declared here and named in `verbFamilies`.
VerbTable storeProjectVerbs();
VerbTable storeFileVerbs();
VerbTable storeLayerVerbs();
VerbTable storeSelectionVerbs();
VerbTable intakeVerbs();
VerbTable adjustmentVerbs();
VerbTable generativeFillVerbs();
VerbTable pluginVerbs();
VerbTable editVerbs();
VerbTable promptVerbs();
VerbTable lookVerbs();
VerbTable controlVerbs();
VerbTable faultVerbs();
VerbTable canvasVerbs();
VerbTable draftVerbs();
VerbTable rasterVerbs();
VerbTable rasterLayerVerbs();
VerbTable rasterMaskVerbs();
VerbTable rasterGenerativeVerbs();
VerbTable rasterTextVerbs();

std::span<VerbTable (*const)()> verbFamilies();

/// The row of a verb; null for an unknown one.
const Verb* findVerb(const QString& name);

/// Throws ScriptError where the line lacks a key of the verb or has one that is not.
void checkKeys(const Verb& verb, const QJsonObject& line);

} // namespace quillabrae::replay
