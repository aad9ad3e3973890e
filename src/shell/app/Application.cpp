// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/Application.h"

#include "raster/DecodeCache.h"
#include "raster/PixelMemory.h"

#include <new>

namespace quillabrae::shell {

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc&) {
        raster::clearDecodeCache();
        raster::releaseKeptPixelMemory();
        // Not from within what has just failed.
        QMetaObject::invokeMethod(this, &Application::memoryRefused, Qt::QueuedConnection);
        return true;
    }
}

} // namespace quillabrae::shell
