// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LocalFile.h"

#include <algorithm>

namespace quillabrae::platform {

std::optional<QUrl> fileOfThisMachine(QUrl url) {
    const QString host = url.host();
    const bool isOwn = host.isEmpty() || host == QLatin1StringView("localhost");
    // QFileInfo would take what begins with a colon for absolute: a resource of the program itself.
    const QString path = url.path(QUrl::FullyEncoded);
    if (!url.isValid() || !url.isLocalFile() || !isOwn || !path.startsWith(u'/'))
        return std::nullopt;
    // Without a host, what follows two slashes would be one.
    const auto slashes = std::ranges::find_if(path, [](QChar c) { return c != u'/'; });
    if (const qsizetype count = slashes - path.begin(); count > 1)
        url.setPath(path.mid(count - 1), QUrl::TolerantMode);
    if (!host.isEmpty()) url.setHost(QString());
    if (!url.isValid()) return std::nullopt;
    return url;
}

} // namespace quillabrae::platform
