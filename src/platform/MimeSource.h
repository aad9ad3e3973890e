// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace quillabrae::platform {

/// One thing on offer in several forms, each under its MIME type: the clipboard's contents, or what
/// is being dragged.
class MimeSource {
public:
    virtual ~MimeSource() = default;
    /// The types on offer, the owner's favourite first.
    virtual QStringList types() const = 0;
    /// The contents as `type`; empty when that is not on offer.
    virtual QByteArray data(const QString& type) const = 0;
};

namespace MimeTypes {

inline const QString png = QStringLiteral("image/png");
inline const QString tiff = QStringLiteral("image/tiff");
inline const QString webP = QStringLiteral("image/webp");
inline const QString svg = QStringLiteral("image/svg+xml");
inline const QString text = QStringLiteral("text/plain");
inline const QString uriList = QStringLiteral("text/uri-list");
/// The form in which file managers copy files: "copy" or "cut", then a URI on each line.
inline const QString copiedFiles = QStringLiteral("x-special/gnome-copied-files");

} // namespace MimeTypes

/// The files of this machine that the first 100,000 lines of the contents name, in order, folders
/// without a slash at their end. Things elsewhere are left out.
QList<QUrl> localFiles(const MimeSource& source);

/// The forms in which files are copied and dragged: `MimeTypes::uriList` and
/// `MimeTypes::copiedFiles`.
QByteArray uriListOf(const QUrl& file);
QByteArray copiedFilesOf(const QUrl& file);

/// The text on offer; empty when there is none.
QString textOf(const MimeSource& source);

} // namespace quillabrae::platform
