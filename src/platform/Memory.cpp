// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Memory.h"

#include <QFile>

#include <limits>

namespace quillabrae::platform {

qint64 availableMemory() {
    constexpr qint64 bytesInKibibyte = 1024;
    QFile report(QStringLiteral("/proc/meminfo"));
    if (report.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : report.readAll().split('\n')) {
            if (!line.startsWith("MemAvailable:")) continue;
            bool isNumber = false;
            const qint64 kibibytes = line.simplified().split(' ').value(1).toLongLong(&isNumber);
            if (isNumber) return kibibytes * bytesInKibibyte;
        }
    }
    return std::numeric_limits<qint64>::max();
}

} // namespace quillabrae::platform
