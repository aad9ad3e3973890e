// SPDX-License-Identifier: GPL-3.0-or-later
// The stretch of a script in which the preloaded library of tests/faults counts system calls and
// makes them go wrong.
#include "replay/ScriptError.h"
#include "replay/Verb.h"

#include <dlfcn.h>

namespace quillabrae::replay {
namespace {

void call(const char* name) {
    const auto function = reinterpret_cast<void (*)()>(::dlsym(RTLD_DEFAULT, name));
    if (function == nullptr) throw ScriptError(QStringLiteral("no library of faults is loaded"));
    function();
}

QJsonValue begin(Session&, const Arguments&) {
    call("quillabraeFaultsBegin");
    return {};
}

QJsonValue end(Session&, const Arguments&) {
    call("quillabraeFaultsEnd");
    return {};
}

constexpr Verb verbs[] = {
    {"faults.begin", "", begin},
    {"faults.end", "", end},
};

} // namespace

VerbTable faultVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
