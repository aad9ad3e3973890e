// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"

#include <QString>

#include <optional>

namespace quillabrae::services {

/// Keeps the token of the signed-in user in the system's secret store, and nowhere else.
class QuillabraeAuthTokenStore {
public:
    /// `secrets` outlives this.
    explicit QuillabraeAuthTokenStore(platform::SecretStore& secrets) : m_secrets(secrets) {}

    /// Nothing where there is no token, and where the store does not answer.
    std::optional<QString> loadToken() const;
    /// Replaces the token, if there is one. Throws platform::SecretStoreError.
    void saveToken(const QString& token);
    /// Throws platform::SecretStoreError; that there is no token is no error.
    void removeToken();

private:
    platform::SecretStore& m_secrets;
};

} // namespace quillabrae::services
