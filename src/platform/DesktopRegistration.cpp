// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopRegistration.h"

#include "platform/DetachedCommand.h"

namespace quillabrae::platform {

void XdgDesktopRegistration::claimProjectType() {
    startDetached(QStringLiteral("xdg-mime"),
                  {QStringLiteral("default"), QStringLiteral("quillabrae.desktop"),
                   QStringLiteral("application/x-quillabrae-project")});
}

} // namespace quillabrae::platform
