// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/FileDrop.h"

#include <QMimeData>

namespace quillabrae::shell::FileDrop {

bool isWelcome(const QMimeData& data) {
    return data.hasUrls() || data.hasImage() || data.hasText();
}

QList<QUrl> files(const QMimeData& data) {
    QList<QUrl> files;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        if (!url.isLocalFile()) continue;
        // File managers end a folder's URL with a slash; packages are named without one.
        files.append(url.adjusted(QUrl::StripTrailingSlash));
    }
    return files;
}

} // namespace quillabrae::shell::FileDrop
