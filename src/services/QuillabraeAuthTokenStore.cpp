// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/QuillabraeAuthTokenStore.h"

#include <utility>

namespace quillabrae::services {
namespace {

using platform::SecretOrder;
using platform::SecretOutcome;
using platform::SecretStoreError;

SecretOrder order(SecretOrder::Kind kind, const QString& secret = {}) {
    return {kind,
            {QStringLiteral("Quillabrae.Account"), QStringLiteral("BetterAuthBearerToken")},
            secret};
}

platform::SecretStore::Completion tellingFailures(QuillabraeAuthTokenStore::Written completion) {
    return [completion = std::move(completion)](const SecretOutcome& outcome) {
        const auto* error = std::get_if<SecretStoreError>(&outcome);
        completion(error != nullptr ? std::optional(error->description()) : std::nullopt);
    };
}

} // namespace

QuillabraeAuthTokenStore::Call QuillabraeAuthTokenStore::loadToken(Loaded completion) const {
    return m_secrets.begin(order(SecretOrder::Kind::load),
                           [completion = std::move(completion)](const SecretOutcome& outcome) {
                               const auto* token = std::get_if<std::optional<QString>>(&outcome);
                               const bool isThere =
                                   token != nullptr && token->has_value() && !(*token)->isEmpty();
                               completion(isThere ? *token : std::nullopt);
                           });
}

QuillabraeAuthTokenStore::Call QuillabraeAuthTokenStore::saveToken(const QString& token,
                                                                   Written completion) {
    return m_secrets.begin(order(SecretOrder::Kind::save, token),
                           tellingFailures(std::move(completion)));
}

QuillabraeAuthTokenStore::Call QuillabraeAuthTokenStore::removeToken(Written completion) {
    return m_secrets.begin(order(SecretOrder::Kind::remove),
                           tellingFailures(std::move(completion)));
}

} // namespace quillabrae::services
