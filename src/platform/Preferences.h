// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

namespace quillabrae::platform {

/// The user's stored preferences: a persistent map from key to value in which an absent key is
/// told apart from a stored false.
class Preferences {
public:
    virtual ~Preferences() = default;

    /// An invalid QVariant for an absent key.
    virtual QVariant value(const QString& key) const = 0;
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void remove(const QString& key) = 0;

    /// The stored boolean; `fallback` when the key is absent or holds no boolean.
    bool boolean(const QString& key, bool fallback) const;
    /// The stored whole number; `fallback` when the key is absent or holds none.
    int integer(const QString& key, int fallback) const;
    /// The stored bytes, empty when the key is absent.
    QByteArray bytes(const QString& key) const { return value(key).toByteArray(); }
};

} // namespace quillabrae::platform
