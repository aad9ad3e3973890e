// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/SignInRequest.h"

#include "platform/ProgramLink.h"

#include <QCryptographicHash>
#include <QUrlQuery>

namespace quillabrae::services {
namespace {

constexpr qsizetype randomByteCount = 32;

QString encoded(const QString& text) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

bool isCallback(const QUrl& url) {
    return platform::isProgramLink(url) && url.authority() == QStringLiteral("auth") &&
           url.path() == QStringLiteral("/callback");
}

/// The value of the one item of that name; nothing where there are none or several.
std::optional<QString> onlyValue(const QUrlQuery& query, const QString& name) {
    const QStringList values = query.allQueryItemValues(name, QUrl::FullyDecoded);
    return values.size() == 1 ? std::optional(values.front()) : std::nullopt;
}

} // namespace

QString base64Url(const QByteArray& bytes) {
    return QString::fromLatin1(
        bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

std::optional<SignInRequest> SignInRequest::make(const RandomBytes& random) {
    const auto state = random(randomByteCount);
    const auto verifier = random(randomByteCount);
    if (!state || !verifier) return std::nullopt;
    return SignInRequest{base64Url(*state), base64Url(*verifier)};
}

QString SignInRequest::codeChallenge() const {
    return base64Url(QCryptographicHash::hash(codeVerifier.toUtf8(), QCryptographicHash::Sha256));
}

QUrl SignInRequest::page(const WebService& service) const {
    QUrl page = service.at(QStringLiteral("/sign-in"));
    if (page.isEmpty()) return {};
    const QString target = QStringLiteral("/app-auth?state=%1&code_challenge=%2")
                               .arg(encoded(state), encoded(codeChallenge()));
    page.setQuery(QStringLiteral("next=") + encoded(target), QUrl::StrictMode);
    return page;
}

std::optional<QString> codeFromCallback(const QUrl& callback, const QString& state) {
    if (!isCallback(callback)) return std::nullopt;
    const QUrlQuery query(callback);
    const auto code = onlyValue(query, QStringLiteral("code"));
    if (state.isEmpty() || onlyValue(query, QStringLiteral("state")) != state) return std::nullopt;
    return code && !code->isEmpty() ? code : std::nullopt;
}

} // namespace quillabrae::services
