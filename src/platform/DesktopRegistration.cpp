// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopRegistration.h"

#include "platform/ApplicationIdentity.h"
#include "platform/DetachedCommand.h"

namespace quillabrae::platform {

void XdgDesktopRegistration::claimProjectType() {
    startDetached(
        QStringLiteral("xdg-mime"),
        {QStringLiteral("default"), applicationId + QStringLiteral(".desktop"), projectType});
}

} // namespace quillabrae::platform
