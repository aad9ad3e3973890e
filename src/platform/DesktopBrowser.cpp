// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopBrowser.h"

#include <QDesktopServices>

namespace quillabrae::platform {

bool DesktopBrowser::open(const QUrl& page) {
    return page.isValid() && QDesktopServices::openUrl(page);
}

} // namespace quillabrae::platform
