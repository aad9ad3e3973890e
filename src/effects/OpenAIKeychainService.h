// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"

#include <QString>

#include <memory>
#include <optional>

namespace quillabrae::effects {

/// Keeps the user's key for the image-edit service in the system's secret store, and nowhere else.
class OpenAIKeychainService {
public:
    /// `secrets` outlives this.
    explicit OpenAIKeychainService(platform::SecretStore& secrets) : m_secrets(secrets) {}

    /// Nothing where there is no key, and where the store does not answer.
    std::optional<QString> loadAPIKey() const;
    /// Replaces the key, if there is one. Throws platform::SecretStoreError.
    void saveAPIKey(const QString& key);
    /// Throws platform::SecretStoreError; that there is no key is no error.
    void removeAPIKey();

    /// The same without waiting, as platform::SecretStore begins orders. A store that does not
    /// answer is told of here.
    using Completion = platform::SecretStore::Completion;
    std::unique_ptr<platform::SecretCall> beginLoading(Completion completion) const;
    std::unique_ptr<platform::SecretCall> beginSaving(const QString& key, Completion completion);
    std::unique_ptr<platform::SecretCall> beginRemoving(Completion completion);

    /// The key in what came of beginLoading; nothing where loadAPIKey() would say so.
    static std::optional<QString> keyIn(const platform::SecretOutcome& loaded);

private:
    platform::SecretStore& m_secrets;
};

} // namespace quillabrae::effects
