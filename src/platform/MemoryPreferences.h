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
        m_values.insert(key, value);
    }
    void remove(const QString& key) override { m_values.remove(key); }

private:
    QHash<QString, QVariant> m_values;
};

} // namespace quillabrae::platform
