// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/GioFileIcons.h"

#include "platform/DetachedCommand.h"

#include <QUrl>

namespace quillabrae::platform {

void GioFileIcons::setIcon(const QString& folder, const QString& imageFile) {
    const QString imageUri = QString::fromLatin1(QUrl::fromLocalFile(imageFile).toEncoded());
    startDetached(QStringLiteral("gio"), {QStringLiteral("set"), folder,
                                          QStringLiteral("metadata::custom-icon"), imageUri});
}

} // namespace quillabrae::platform
