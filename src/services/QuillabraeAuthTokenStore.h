// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quillabrae::services {

/// Keeps the token of the signed-in user in the system's secret store, and nowhere else. Nothing
/// waits for the store: each operation ends in the event loop, as platform::SecretStore begins
/// orders.
class QuillabraeAuthTokenStore {
public:
    /// `secrets` outlives this.
    explicit QuillabraeAuthTokenStore(platform::SecretStore& secrets) : m_secrets(secrets) {}

    using Call = std::unique_ptr<platform::SecretCall>;
    /// Nothing where there is no token, and where the store does not answer.
    using Loaded = std::function<void(const std::optional<QString>& token)>;
    /// What went wrong, as a sentence for the user, or nothing.
    using Written = std::function<void(const std::optional<QString>& failure)>;

    Call loadToken(Loaded completion) const;
    /// Replaces the token, if there is one.
    Call saveToken(const QString& token, Written completion);
    /// That there is no token is no failure.
    Call removeToken(Written completion);

private:
    platform::SecretStore& m_secrets;
};

} // namespace quillabrae::services
