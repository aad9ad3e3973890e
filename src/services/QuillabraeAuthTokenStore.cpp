// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/QuillabraeAuthTokenStore.h"

namespace quillabrae::services {
namespace {

platform::SecretName tokenName() {
    return {QStringLiteral("Quillabrae.Account"), QStringLiteral("BetterAuthBearerToken")};
}

} // namespace

std::optional<QString> QuillabraeAuthTokenStore::loadToken() const {
    try {
        const std::optional<QString> token = m_secrets.load(tokenName());
        return token && !token->isEmpty() ? token : std::nullopt;
    } catch (const platform::SecretStoreError&) {
        return std::nullopt;
    }
}

void QuillabraeAuthTokenStore::saveToken(const QString& token) {
    m_secrets.save(tokenName(), token);
}

void QuillabraeAuthTokenStore::removeToken() {
    m_secrets.remove(tokenName());
}

} // namespace quillabrae::services
