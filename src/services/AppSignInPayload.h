// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillabrae::services {

/// What the service answers to the code of a sign-in.
struct AppSignInPayload {
    std::optional<QString> name;
    QString email;
    QString token;

    friend bool operator==(const AppSignInPayload&, const AppSignInPayload&) = default;
};

/// Nothing for what is no such answer, or one whose token cannot stand in a header.
std::optional<AppSignInPayload> appSignInPayload(const QByteArray& json);

} // namespace quillabrae::services
