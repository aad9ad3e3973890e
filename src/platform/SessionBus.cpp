// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionBus.h"

#include <QFileInfo>
#include <QString>

namespace quillabrae::platform {

bool hasSessionBus() {
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

} // namespace quillabrae::platform
