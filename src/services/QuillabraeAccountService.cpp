// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/QuillabraeAccountService.h"

#include "platform/Preferences.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <utility>

namespace quillabrae::services {
namespace {

using platform::HttpFailure;
using platform::HttpOutcome;
using platform::HttpReply;
using platform::HttpRequest;

const QString nameKey = QStringLiteral("Quillabrae.accountName");
const QString emailKey = QStringLiteral("Quillabrae.accountEmail");

constexpr auto tokenTimeout = std::chrono::seconds(60);
constexpr auto signOutTimeout = std::chrono::seconds(15);
/// An answer holds a name, an address and a token.
constexpr qint64 maximumReplyBytes = qint64{64} * 1024;

QString statusFor(WebAuthenticationError error) {
    switch (error) {
        case WebAuthenticationError::cancelled:
            return QuillabraeAccountService::tr("Sign-in cancelled.");
        case WebAuthenticationError::timedOut:
            return QuillabraeAccountService::tr("Sign-in took too long. Please try again.");
    }
    return {};
}

bool isSuccess(const HttpReply& reply) {
    return reply.status >= 200 && reply.status <= 299;
}

} // namespace

QuillabraeAccountService::QuillabraeAccountService(Environment environment, WebService service,
                                                   QObject* parent)
    : QObject(parent),
      m_environment(std::move(environment)),
      m_service(std::move(service)),
      m_tokens(m_environment.secrets),
      m_name(m_environment.preferences.value(nameKey).toString()),
      m_email(m_environment.preferences.value(emailKey).toString()),
      m_isSignedIn(!m_email.isEmpty()) {}

QuillabraeAccountService::~QuillabraeAccountService() = default;

bool QuillabraeAccountService::isSignedIn() const {
    return isConfigured() && m_isSignedIn;
}

void QuillabraeAccountService::lookForToken() {
    if (m_hasLooked || m_isBusy || !isConfigured()) return;
    m_hasLooked = true;
    m_tokenCall = m_tokens.loadToken([this](const std::optional<QString>& token) {
        m_tokenCall.reset();
        m_isSignedIn = token.has_value();
        Q_EMIT changed();
    });
}

void QuillabraeAccountService::signIn() {
    if (m_isBusy) return;
    if (!isConfigured())
        return report(
            tr("This build of Quillabrae has no account service configured, "
               "so nobody can sign in."));
    const auto request = SignInRequest::make(m_environment.random);
    if (!request) return report(tr("Could not start secure sign-in. Please try again."));
    m_authenticationSession = m_environment.web.start(
        request->page(m_service),
        [this, request = *request](const auto& outcome) { takeCallback(outcome, request); });
    if (!m_authenticationSession) return report(tr("Could not open the Quillabrae sign-in page."));
    begin(tr("Complete sign-in in your browser…"));
}

void QuillabraeAccountService::takeCallback(const WebAuthenticationOutcome& outcome,
                                            const SignInRequest& request) {
    // It stands until this has returned: what is called here may belong to it.
    const auto session = std::move(m_authenticationSession);
    if (const auto* error = std::get_if<WebAuthenticationError>(&outcome))
        return end(statusFor(*error));
    const auto code = codeFromCallback(std::get<QUrl>(outcome), request.state);
    if (!code) return end(tr("Quillabrae could not verify the sign-in response."));
    finishSignIn(*code, request.codeVerifier);
}

void QuillabraeAccountService::finishSignIn(const QString& code, const QString& verifier) {
    report(tr("Finishing sign-in…"));
    const QJsonObject body{{QStringLiteral("code"), code},
                           {QStringLiteral("code_verifier"), verifier}};
    const HttpRequest request{
        m_service.at(QStringLiteral("/api/app-auth/token")),
        "POST",
        {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
        QJsonDocument(body).toJson(QJsonDocument::Compact),
        tokenTimeout,
        maximumReplyBytes};
    m_tokenExchange = m_environment.http.send(
        request, {}, [this](const HttpOutcome& outcome) { takeToken(outcome); });
}

void QuillabraeAccountService::takeToken(const HttpOutcome& outcome) {
    m_tokenExchange.reset();
    if (const auto* failure = std::get_if<HttpFailure>(&outcome)) return end(failure->description);
    const auto& reply = std::get<HttpReply>(outcome);
    const auto payload = isSuccess(reply) ? appSignInPayload(reply.body) : std::nullopt;
    if (!payload) return end(tr("Quillabrae could not finish signing in. Please try again."));
    m_tokenCall = m_tokens.saveToken(
        payload->token, [this, payload = *payload](const std::optional<QString>& failure) {
            m_tokenCall.reset();
            if (failure) return end(*failure);
            takeSavedToken(payload);
        });
    Q_EMIT changed();
}

void QuillabraeAccountService::takeSavedToken(const AppSignInPayload& payload) {
    updateProfile(payload.name.value_or(QString()), payload.email);
    m_isSignedIn = true;
    m_hasLooked = true;
    end(tr("Signed in."));
}

void QuillabraeAccountService::updateProfile(const QString& name, const QString& email) {
    m_name = name;
    m_email = email;
    m_environment.preferences.setValue(nameKey, name);
    m_environment.preferences.setValue(emailKey, email);
}

void QuillabraeAccountService::cancelSignIn() {
    if (m_authenticationSession) {
        m_authenticationSession->cancel();
    } else if (m_tokenExchange) {
        m_tokenExchange.reset();
        end(statusFor(WebAuthenticationError::cancelled));
    }
}

void QuillabraeAccountService::signOut() {
    if (m_isBusy) return;
    begin(tr("Signing out…"));
    m_tokenCall =
        m_tokens.loadToken([this](const std::optional<QString>& token) { removeToken(token); });
}

void QuillabraeAccountService::removeToken(const std::optional<QString>& token) {
    m_tokenCall = m_tokens.removeToken([this, token](const std::optional<QString>& failure) {
        m_tokenCall.reset();
        if (failure) return end(*failure);
        if (token) tellServiceOfSignOut(*token);
        forgetUser();
    });
}

void QuillabraeAccountService::forgetUser() {
    m_name.clear();
    m_email.clear();
    for (const QString& key : {nameKey, emailKey}) m_environment.preferences.remove(key);
    m_isSignedIn = false;
    m_hasLooked = true;
    end(tr("Signed out."));
}

void QuillabraeAccountService::tellServiceOfSignOut(const QString& token) {
    if (!isConfigured()) return;
    const HttpRequest request{m_service.at(QStringLiteral("/api/auth/sign-out")),
                              "POST",
                              {{"Authorization", "Bearer " + token.toUtf8()}},
                              {},
                              signOutTimeout,
                              maximumReplyBytes};
    m_signOutExchange = m_environment.http.send(
        request, {}, [this](const HttpOutcome&) { m_signOutExchange.reset(); });
}

void QuillabraeAccountService::begin(const QString& statusMessage) {
    // An answer that comes from now on is about another time.
    m_tokenCall.reset();
    m_isBusy = true;
    report(statusMessage);
}

void QuillabraeAccountService::report(const QString& statusMessage) {
    m_statusMessage = statusMessage;
    Q_EMIT changed();
}

void QuillabraeAccountService::end(const QString& statusMessage) {
    m_isBusy = false;
    report(statusMessage);
}

} // namespace quillabrae::services
