// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/WebService.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

/// One sign-in as OAuth has it for programs that cannot keep a secret (RFC 7636): the page is told
/// the hash of a verifier, and only who knows the verifier can turn the code that comes back into a
/// token. The state ties the answer to the question.
namespace quillabrae::services {

/// Unguessable bytes, or nothing when there are none to be had.
using RandomBytes = std::function<std::optional<QByteArray>(qsizetype count)>;

/// Base64 for URLs: "-" and "_" for "+" and "/", and no padding.
QString base64Url(const QByteArray& bytes);

struct SignInRequest {
    QString state;
    QString codeVerifier;

    /// Nothing when there is no randomness.
    static std::optional<SignInRequest> make(const RandomBytes& random);

    /// The hash of the verifier's text.
    QString codeChallenge() const;
    /// Where the user signs in; empty where there is no service.
    QUrl page(const WebService& service) const;
};

/// The code that a link brings back from the page of the sign-in with `state`; nothing for any
/// other link.
std::optional<QString> codeFromCallback(const QUrl& callback, const QString& state);

} // namespace quillabrae::services
