// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

/// The freedesktop list of recently used files, "recently-used.xbel": XBEL bookmarks, each with the
/// programs that used the file. All that the list says of other files and of other programs stays,
/// what is not understood included.
namespace quillabrae::platform::RecentlyUsedList {

/// What a program says of a file.
struct Use {
    QUrl file;
    QString mimeType;
    QString program;
    /// The command line that opens it, with "%u" for the file.
    QString command;
    QDateTime time;
};

/// The list with one more use of the file. An empty `list` is a new one. Nothing for a list that is
/// not in order, which is better left alone.
std::optional<QByteArray> withUse(const QByteArray& list, const Use& use);

/// The list without the program's uses of the file, which is dropped when no other program has used
/// it. Nothing when there is nothing to change, or the list is not in order.
std::optional<QByteArray> withoutUses(const QByteArray& list, const QUrl& file,
                                      const QString& program);

} // namespace quillabrae::platform::RecentlyUsedList
