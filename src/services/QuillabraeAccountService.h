// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"
#include "services/AppSignInPayload.h"
#include "services/QuillabraeAuthTokenStore.h"
#include "services/SignInRequest.h"
#include "services/WebAuthenticationSession.h"
#include "services/WebService.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace quillabrae::platform {
class Preferences;
}

namespace quillabrae::services {

/// Signs the user in to the makers' service and out again. The token is in the secret store alone;
/// the profile is in the preferences too, so that it can be shown before the secret store is asked.
/// Every outcome is told by `statusMessage`.
class QuillabraeAccountService final : public QObject {
    Q_OBJECT

public:
    /// All outlive the service.
    struct Environment {
        platform::HttpClient& http;
        platform::SecretStore& secrets;
        platform::Preferences& preferences;
        WebAuthentication& web;
        RandomBytes random;
    };

    QuillabraeAccountService(Environment environment, WebService service,
                             QObject* parent = nullptr);
    ~QuillabraeAccountService() override;

    bool isConfigured() const { return m_service.isConfigured(); }
    const QString& name() const { return m_name; }
    const QString& email() const { return m_email; }
    /// Whether there is a token: as far as the profile tells, until the secret store has answered.
    bool isSignedIn() const;
    const QString& statusMessage() const { return m_statusMessage; }
    /// Whether a sign-in or a sign-out is under way.
    bool isBusy() const { return m_isBusy; }
    /// Whether what is under way waits for the browser or the service.
    bool canCancel() const { return m_authenticationSession || m_tokenExchange; }

    /// Asks the secret store for the token, unless that was done before. Put off until somebody
    /// looks, since the store may ask the user to unlock it.
    void lookForToken();
    /// Has the user sign in in the browser. Does nothing while the service is busy.
    void signIn();
    /// Gives up the sign-in that is under way, where that can be.
    void cancelSignIn();
    /// Forgets token and profile and tells the service, whose answer is not waited for. Does
    /// nothing while the service is busy.
    void signOut();

Q_SIGNALS:
    /// Any of what the service tells may be another now.
    void changed();

private:
    void takeCallback(const WebAuthenticationOutcome& outcome, const SignInRequest& request);
    void finishSignIn(const QString& code, const QString& verifier);
    void takeToken(const platform::HttpOutcome& outcome);
    void takeSavedToken(const AppSignInPayload& payload);
    void removeToken(const std::optional<QString>& token);
    void forgetUser();
    void updateProfile(const QString& name, const QString& email);
    void tellServiceOfSignOut(const QString& token);
    void begin(const QString& statusMessage);
    void report(const QString& statusMessage);
    void end(const QString& statusMessage);

    Environment m_environment;
    WebService m_service;
    QuillabraeAuthTokenStore m_tokens;
    QString m_name;
    QString m_email;
    QString m_statusMessage;
    bool m_isBusy = false;
    bool m_isSignedIn = false;
    bool m_hasLooked = false;
    std::unique_ptr<WebAuthenticationSession> m_authenticationSession;
    std::unique_ptr<platform::HttpExchange> m_tokenExchange;
    std::unique_ptr<platform::HttpExchange> m_signOutExchange;
    /// What was asked of the secret store last, while it has not answered.
    QuillabraeAuthTokenStore::Call m_tokenCall;
};

} // namespace quillabrae::services
