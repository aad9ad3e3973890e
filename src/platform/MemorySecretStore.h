// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"

#include <QTimer>

#include <algorithm>
#include <utility>
#include <vector>

namespace quillabrae::platform {

/// Secrets that live as long as this object.
class MemorySecretStore final : public SecretStore {
public:
    /// While set, every call fails with this description.
    std::optional<QString> refusal;
    /// While set, orders that were begun stay unanswered.
    bool isSlow = false;

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
    std::unique_ptr<SecretCall> begin(const SecretOrder& order, Completion completion) override {
        return std::make_unique<Call>(*this, order, std::move(completion));
    }

private:
    /// An order that is carried out in the event loop, as soon as the store is quick again.
    class Call final : public SecretCall {
    public:
        Call(MemorySecretStore& store, SecretOrder order, Completion completion)
            : m_store(store), m_order(std::move(order)), m_completion(std::move(completion)) {
            QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tryToAnswer(); });
            m_timer.start(0);
        }

    private:
        void tryToAnswer() {
            if (m_store.isSlow) return;
            m_timer.stop();
            // The answer may destroy this.
            const Completion completion = std::move(m_completion);
            completion(m_store.outcomeOf(m_order));
        }

        MemorySecretStore& m_store;
        SecretOrder m_order;
        Completion m_completion;
        QTimer m_timer;
    };

    SecretOutcome outcomeOf(const SecretOrder& order) {
        try {
            if (order.kind == SecretOrder::Kind::load) return load(order.name);
            if (order.kind == SecretOrder::Kind::save)
                save(order.name, order.secret);
            else
                remove(order.name);
            return std::nullopt;
        } catch (const SecretStoreError& error) {
            return error;
        }
    }

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
