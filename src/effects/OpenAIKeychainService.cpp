// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIKeychainService.h"

namespace quillabrae::effects {
namespace {

platform::SecretName keyName() {
    return {QStringLiteral("Quillabrae.OpenAI"), QStringLiteral("OpenAIAPIKey")};
}

} // namespace

std::optional<QString> OpenAIKeychainService::loadAPIKey() const {
    try {
        const std::optional<QString> key = m_secrets.load(keyName());
        return key && !key->isEmpty() ? key : std::nullopt;
    } catch (const platform::SecretStoreError&) {
        return std::nullopt;
    }
}

void OpenAIKeychainService::saveAPIKey(const QString& key) {
    m_secrets.save(keyName(), key);
}

void OpenAIKeychainService::removeAPIKey() {
    m_secrets.remove(keyName());
}

} // namespace quillabrae::effects
