// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillabrae::platform {

/// Secrets that live as long as this object.
class MemorySecretStore final : public SecretStore {
public:
    /// While set, every call fails with this description.
    std::optional<QString> refusal;

    std::optional<QString> load(const SecretName& name) override {
        answer();
        const auto found = find(name);
        return found == m_secrets.end() ? std::nullopt : std::optional(found->second);
    }
    void save(const SecretName& name, const QString& secret) override {
        remove(name);
        m_secrets.emplace_back(name, secret);
    }
    void remove(const SecretName& name) override {
        answer();
        if (const auto found = find(name); found != m_secrets.end()) m_secrets.erase(found);
    }
    std::size_t count() const { return m_secrets.size(); }

private:
    using Entries = std::vector<std::pair<SecretName, QString>>;

    void answer() const {
        if (refusal) throw SecretStoreError(*refusal);
    }
    Entries::iterator find(const SecretName& name) {
        return std::ranges::find(m_secrets, name, &Entries::value_type::first);
    }

    Entries m_secrets;
};

} // namespace quillabrae::platform
