// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MimeSource.h"

namespace quillabrae::platform {
namespace {

/// Lines of URIs; anything that is no URI of a local file is passed over, comments included.
QList<QUrl> filesOnLines(const QByteArray& lines) {
    QList<QUrl> files;
    for (const QByteArray& line : lines.split('\n')) {
        QUrl url(QString::fromUtf8(line.trimmed()));
        if (!url.isValid() || !url.isLocalFile() || url.path().isEmpty()) continue;
        if (url.host() == QLatin1StringView("localhost")) url.setHost(QString());
        if (!url.host().isEmpty()) continue;
        files.append(url.adjusted(QUrl::StripTrailingSlash));
    }
    return files;
}

} // namespace

QList<QUrl> localFiles(const MimeSource& source) {
    for (const QString& type : {MimeTypes::uriList, MimeTypes::copiedFiles}) {
        if (!source.types().contains(type)) continue;
        QList<QUrl> files = filesOnLines(source.data(type));
        if (!files.isEmpty()) return files;
    }
    return {};
}

QByteArray uriListOf(const QUrl& file) {
    return file.toEncoded() + "\r\n";
}

QByteArray copiedFilesOf(const QUrl& file) {
    return "copy\n" + file.toEncoded();
}

QString textOf(const MimeSource& source) {
    const QStringList types = source.types();
    for (const QString& type : types) {
        const bool isText = type == MimeTypes::text || type.startsWith(MimeTypes::text + u';');
        if (!isText) continue;
        const QByteArray bytes = source.data(type);
        if (!bytes.isEmpty()) return QString::fromUtf8(bytes);
    }
    return {};
}

} // namespace quillabrae::platform
