// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WriteBack.h"

#include <QFileDevice>

#include <fcntl.h>

namespace quillabrae::platform {

void startWriteBack(const QFileDevice& file) {
#ifdef SYNC_FILE_RANGE_WRITE
    // No length means up to the end. A failure leaves it to the system, as without the call.
    static_cast<void>(::sync_file_range(file.handle(), 0, 0, SYNC_FILE_RANGE_WRITE));
#else
    static_cast<void>(file);
#endif
}

} // namespace quillabrae::platform
