// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Preferences.h"

namespace quillabrae::platform {

// Text files keep no types: a boolean or a number comes back from one as the text of it.

bool Preferences::boolean(const QString& key, bool fallback) const {
    const QVariant stored = value(key);
    if (stored.typeId() == QMetaType::Bool) return stored.toBool();
    if (stored.typeId() != QMetaType::QString) return fallback;
    const QString text = stored.toString();
    if (text == QLatin1StringView("true")) return true;
    if (text == QLatin1StringView("false")) return false;
    return fallback;
}

int Preferences::integer(const QString& key, int fallback) const {
    const QVariant stored = value(key);
    switch (stored.typeId()) {
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::QString:
            break;
        default:
            return fallback;
    }
    bool isInteger = false;
    const int number = stored.toString().toInt(&isInteger);
    return isInteger ? number : fallback;
}

} // namespace quillabrae::platform
