// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MimeSource.h"

#include "platform/LocalFile.h"

namespace quillabrae::platform {
namespace {

constexpr int maximumLineCount = 100'000;
/// The longest path there is, with each byte as three.
constexpr qsizetype maximumLineLength = qsizetype{16} * 1024;

/// Lines of URIs; anything that is no URI of a local file is passed over, comments included.
QList<QUrl> filesOnLines(const QByteArray& lines) {
    QList<QUrl> files;
    qsizetype next = 0;
    for (int count = 0; count < maximumLineCount && next < lines.size(); ++count) {
        const qsizetype start = next;
        const qsizetype end = lines.indexOf('\n', start);
        next = end < 0 ? lines.size() : end + 1;
        if (next - start > maximumLineLength) continue;
        const QUrl url(QString::fromUtf8(lines.mid(start, next - start).trimmed()));
        if (const auto file = fileOfThisMachine(url))
            files.append(file->adjusted(QUrl::StripTrailingSlash));
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
