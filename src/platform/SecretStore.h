// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <variant>

namespace quillabrae::platform {

/// What a secret is filed under.
struct SecretName {
    QString service;
    QString account;

    friend bool operator==(const SecretName&, const SecretName&) = default;
};

/// The system's secret store refused or did not answer. `description` is a sentence for the user
/// and never holds a secret.
class SecretStoreError : public std::runtime_error {
public:
    explicit SecretStoreError(const QString& description)
        : std::runtime_error(description.toStdString()), m_description(description) {}

    const QString& description() const { return m_description; }

private:
    QString m_description;
};

/// What is asked of a secret store; the secret is for saving alone.
struct SecretOrder {
    enum class Kind { load, save, remove };

    Kind kind = Kind::load;
    SecretName name;
    QString secret;
};

/// What came of an order: the secret that was to be loaded, if there is one, or why it failed.
using SecretOutcome = std::variant<std::optional<QString>, SecretStoreError>;

/// An order under way. Destroying it leaves the order to itself: it goes on, and nobody is told.
class SecretCall {
public:
    virtual ~SecretCall() = default;
};

/// Where the user's keys and tokens are kept, and nowhere else. Each call that does not begin an
/// order blocks until the system has answered, which includes the user who is asked to unlock the
/// store, and throws SecretStoreError when it will not.
class SecretStore {
public:
    virtual ~SecretStore() = default;

    /// Nothing where there is no such secret.
    virtual std::optional<QString> load(const SecretName& name) = 0;
    /// Replaces the secret of that name, if there is one.
    virtual void save(const SecretName& name, const QString& secret) = 0;
    /// Does nothing where there is no such secret.
    virtual void remove(const SecretName& name) = 0;

    using Completion = std::function<void(const SecretOutcome&)>;
    /// Carries an order out without waiting. `completion` is called once, from the event loop, and
    /// may destroy the call. Main thread only.
    virtual std::unique_ptr<SecretCall> begin(const SecretOrder& order, Completion completion) = 0;
};

} // namespace quillabrae::platform
