// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WriteBack.h"

#include <QDateTime>
#include <QFileDevice>
#include <QFileInfo>

#include <fcntl.h>

#include <ctime>

namespace quillabrae::platform {

void startWriteBack(const QFileDevice& file) {
#ifdef SYNC_FILE_RANGE_WRITE
    // No length means up to the end. A failure leaves it to the system, as without the call.
    static_cast<void>(::sync_file_range(file.handle(), 0, 0, SYNC_FILE_RANGE_WRITE));
#else
    static_cast<void>(file);
#endif
}

bool isFromBeforeSystemStart(const QString& path) {
#ifdef CLOCK_BOOTTIME
    timespec running{};
    if (::clock_gettime(CLOCK_BOOTTIME, &running) != 0) return true;
    const QDateTime start = QDateTime::currentDateTimeUtc().addSecs(-running.tv_sec);
    return QFileInfo(path).lastModified() < start;
#else
    static_cast<void>(path);
    return true;
#endif
}

} // namespace quillabrae::platform
