// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/FileLocation.h"

#include <QDir>
#include <QFileInfo>

namespace quillabrae::store {

QUrl fileLocation(const QUrl& url) {
    if (url.isLocalFile() || url.scheme().isEmpty()) {
        const QString path = url.isLocalFile() ? url.toLocalFile() : url.path();
        return QUrl::fromLocalFile(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    }
    return url.adjusted(QUrl::NormalizePathSegments | QUrl::StripTrailingSlash);
}

QUrl standardizedFileLocation(const QUrl& url) {
    const QUrl location = fileLocation(url);
    if (!location.isLocalFile()) return location;
    const QString canonical = QFileInfo(location.toLocalFile()).canonicalFilePath();
    return canonical.isEmpty() ? location : QUrl::fromLocalFile(canonical);
}

QString lowercasedExtension(const QUrl& url) {
    return QFileInfo(fileLocation(url).path()).suffix().toLower();
}

} // namespace quillabrae::store
