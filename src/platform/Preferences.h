// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

namespace quillabrae::platform {

/// Tells of changes, to those who connect.
class PreferenceChanges final : public QObject {
    Q_OBJECT

Q_SIGNALS:
    /// The key holds another value, or none any more, than it did.
    void changed(const QString& key);
};

/// The user's stored preferences: a persistent map from key to value in which an absent key is
/// told apart from a stored false. Main thread only.
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

    /// Those that are made through this object.
    PreferenceChanges& changes() { return m_changes; }

private:
    PreferenceChanges m_changes;
};

} // namespace quillabrae::platform
