// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppSignInPayload.h"

#include "model/JsonError.h"
#include "model/JsonFields.h"
#include "model/RecordCoding.h"

#include <algorithm>

namespace quillabrae::model {

template <>
struct JsonForm<services::AppSignInPayload> {
    using Payload = services::AppSignInPayload;
    static constexpr auto fields =
        jsonFields(required("email", &Payload::email), optional("name", &Payload::name),
                   required("token", &Payload::token));
    static void read(JsonReader& reader, Payload& payload) { readFields(reader, payload, fields); }
};

} // namespace quillabrae::model

namespace quillabrae::services {
namespace {

/// Without blanks, line ends and what is not ASCII.
bool canStandInHeader(const QString& token) {
    return !token.isEmpty() &&
           std::ranges::all_of(token, [](QChar c) { return c > u' ' && c <= u'~'; });
}

} // namespace

std::optional<AppSignInPayload> appSignInPayload(const QByteArray& json) {
    try {
        auto payload = model::decodedJson<AppSignInPayload>(json);
        if (canStandInHeader(payload.token)) return payload;
    } catch (const model::JsonError&) {
        // Whatever it is, it is no answer.
    }
    return std::nullopt;
}

} // namespace quillabrae::services
