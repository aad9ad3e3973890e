// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PackageInstaller.h"

#include "platform/DetachedCommand.h"

#include <QStandardPaths>

namespace quillabrae::platform {

PackageInstaller::HandOver XdgPackageInstaller::install(const QString& path) {
    const QString opener = QStringLiteral("xdg-open");
    if (QStandardPaths::findExecutable(opener).isEmpty()) return HandOver::noInstaller;
    startDetached(opener, {path});
    return HandOver::done;
}

} // namespace quillabrae::platform
