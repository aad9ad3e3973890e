// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Preferences.h"

#include <QHash>

namespace quillabrae::platform {

/// Preferences that live as long as this object.
class MemoryPreferences final : public Preferences {
public:
    QVariant value(const QString& key) const override { return m_values.value(key); }
    void setValue(const QString& key, const QVariant& value) override {
        if (this->value(key) == value) return;
        m_values.insert(key, value);
        Q_EMIT changes().changed(key);
    }
    void remove(const QString& key) override {
        if (m_values.remove(key)) Q_EMIT changes().changed(key);
    }

private:
    QHash<QString, QVariant> m_values;
};

} // namespace quillabrae::platform
