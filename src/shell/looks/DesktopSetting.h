// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Whole, since the bus finds the slot below by its argument types.
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>

namespace quillabrae::shell {

/// One setting of the desktop, as its settings service tells it.
class DesktopSetting final : public QObject {
    Q_OBJECT

public:
    DesktopSetting(QString nameSpace, QString key);

    /// Asks for the setting and follows it from then on. Does not wait; without a settings service,
    /// or one that has the setting, nothing is told.
    void follow();

Q_SIGNALS:
    /// What it is, at first and after every change.
    void told(const QVariant& value);

private Q_SLOTS:
    void settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value);

private:
    QString m_nameSpace;
    QString m_key;
};

} // namespace quillabrae::shell
