// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

QJsonValue answer(Session& session, const Arguments& arguments) {
    session.panels().queueAnswer(arguments.text("prompt"), arguments.value("with"));
    return {};
}

QJsonValue prompts(Session& session, const Arguments&) {
    return session.panels().shownPrompts();
}

constexpr Verb verbs[] = {
    {"answer", "prompt with", answer},
    {"prompts", "", prompts},
};

} // namespace

VerbTable promptVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
