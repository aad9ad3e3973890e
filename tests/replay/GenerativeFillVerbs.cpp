// SPDX-License-Identifier: GPL-3.0-or-later
// Generative fill, with a script in the place of the service that paints.
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QFile>

namespace quillabrae::replay {
namespace {

QJsonValue key(Session& session, const Arguments& arguments) {
    ScriptedFillService& service = session.fillService();
    if (arguments.value("is").isNull())
        service.keychain.removeAPIKey();
    else
        service.keychain.saveAPIKey(arguments.text("is"));
    return {};
}

effects::GenerativeFillRequest requestFrom(const Arguments& arguments) {
    const Arguments form(objectFrom(arguments.value("request"), QStringLiteral("request")));
    effects::GenerativeFillRequest request;
    request.prompt = form.text("prompt");
    if (form.has("model")) {
        const auto model = effects::generativeFillImageModelFromRawText(form.text("model"));
        if (!model)
            throw ScriptError(QStringLiteral("no model is called \"%1\"").arg(form.text("model")));
        request.model = *model;
    }
    if (form.has("providesCanvasContext"))
        request.providesCanvasContext = form.boolean("providesCanvasContext");
    return request;
}

QJsonValue perform(Session& session, const Arguments& arguments) {
    ScriptedFillService& service = session.fillService();
    service.lastEnd = QStringLiteral("waiting");
    const int id = session.store().performGenerativeFill(
        requestFrom(arguments), [&service](const std::optional<QString>& failure) {
            service.lastEnd = failure.value_or(QStringLiteral("applied"));
        });
    ScriptedFillService::giveKey();
    return id;
}

QJsonValue cancel(Session& session, const Arguments& arguments) {
    session.store().cancelGenerativeFill(arguments.integer("id"));
    return {};
}

QByteArray bodyFrom(const Session& session, const Arguments& arguments) {
    if (!arguments.has("picture")) return arguments.text("body", QString()).toUtf8();
    QFile file(session.resolvedPath(arguments.text("picture")));
    if (!file.open(QIODevice::ReadOnly))
        throw ScriptError(QStringLiteral("cannot read %1").arg(file.fileName()));
    return R"({"data":[{"b64_json":")" + file.readAll().toBase64() + R"("}]})";
}

QJsonValue answer(Session& session, const Arguments& arguments) {
    platform::HttpOutcome outcome;
    if (arguments.has("failure"))
        outcome = platform::HttpFailure{arguments.text("failure")};
    else
        outcome =
            platform::HttpReply{arguments.integer("status", 200), bodyFrom(session, arguments)};
    ScriptedFillService::giveKey();
    return session.fillService().http.answer(std::move(outcome));
}

QJsonValue sent(Session& session, const Arguments&) {
    ScriptedFillService::giveKey();
    return static_cast<int>(session.fillService().http.requests.size());
}

QJsonValue end(Session& session, const Arguments&) {
    ScriptedFillService::giveKey();
    return session.fillService().lastEnd;
}

QJsonValue canFill(Session& session, const Arguments&) {
    return session.store().canGenerativeFill();
}

constexpr Verb verbs[] = {
    {"store.canGenerativeFill", "", canFill},
    {"store.performGenerativeFill", "request", perform},
    {"store.cancelGenerativeFill", "id", cancel},
    {"service.key", "is", key},
    {"service.answer", "status? body? picture? failure?", answer},
    {"service.sent", "", sent},
    {"service.end", "", end},
};

} // namespace

VerbTable generativeFillVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
