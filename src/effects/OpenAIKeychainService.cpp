// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIKeychainService.h"

#include <utility>

namespace quillabrae::effects {

using platform::SecretCall;
using platform::SecretOrder;
using platform::SecretOutcome;

namespace {

platform::SecretName keyName() {
    return {QStringLiteral("Quillabrae.OpenAI"), QStringLiteral("OpenAIAPIKey")};
}

} // namespace

std::optional<QString> OpenAIKeychainService::loadAPIKey() const {
    try {
        return keyIn(m_secrets.load(keyName()));
    } catch (const platform::SecretStoreError&) {
        return std::nullopt;
    }
}

std::optional<QString> OpenAIKeychainService::keyIn(const SecretOutcome& loaded) {
    const auto* key = std::get_if<std::optional<QString>>(&loaded);
    return key != nullptr && key->has_value() && !key->value().isEmpty() ? *key : std::nullopt;
}

void OpenAIKeychainService::saveAPIKey(const QString& key) {
    m_secrets.save(keyName(), key);
}

void OpenAIKeychainService::removeAPIKey() {
    m_secrets.remove(keyName());
}

std::unique_ptr<SecretCall> OpenAIKeychainService::beginLoading(Completion completion) const {
    return m_secrets.begin({SecretOrder::Kind::load, keyName(), {}}, std::move(completion));
}

std::unique_ptr<SecretCall> OpenAIKeychainService::beginSaving(const QString& key,
                                                               Completion completion) {
    return m_secrets.begin({SecretOrder::Kind::save, keyName(), key}, std::move(completion));
}

std::unique_ptr<SecretCall> OpenAIKeychainService::beginRemoving(Completion completion) {
    return m_secrets.begin({SecretOrder::Kind::remove, keyName(), {}}, std::move(completion));
}

} // namespace quillabrae::effects
