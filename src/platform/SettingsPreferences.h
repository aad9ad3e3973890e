// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Preferences.h"

#include <QHash>
#include <QSettings>
#include <QTimer>

namespace quillabrae::platform {

/// Preferences in an INI file. A change is seen by readers at once; when it reaches the file is
/// for `Writing` to say. What is pending is written on destruction.
class SettingsPreferences final : public Preferences {
public:
    enum class Writing {
        /// Every change is in the file when the call returns.
        atOnce,
        /// Changes are gathered for a moment, since each write waits for the disk. Needs a running
        /// event loop; `flush` writes without one.
        gathered
    };

    SettingsPreferences(const QString& file, Writing writing);
    ~SettingsPreferences() override;

    QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;

    /// Writes what is pending.
    void flush();

private:
    void change(const QString& key, const QVariant& value);

    /// Changes that are not in the file yet; an invalid value stands for a removed key.
    QHash<QString, QVariant> m_pending;
    /// Changes that are.
    QHash<QString, QVariant> m_written;
    /// What the file held before them; it only reads.
    QSettings m_settings;
    Writing m_writing;
    QTimer m_flushTimer;
};

} // namespace quillabrae::platform
