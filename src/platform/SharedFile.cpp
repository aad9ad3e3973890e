// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SharedFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <sys/stat.h>

#include <tuple>

namespace quillabrae::platform {
namespace {

/// Lists of the desktop's programs are a hundred kilobytes long.
constexpr qint64 greatestFile = qint64{16} << 20U;

/// What tells one state of a file from another; nothing for no file.
using FileState = std::optional<std::tuple<ino_t, off_t, time_t, long>>;

FileState stateOf(const QString& path) {
    struct stat facts {};
    if (::stat(QFile::encodeName(path).constData(), &facts) != 0) return std::nullopt;
    return std::tuple(facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec);
}

} // namespace

void rewriteSharedFile(const QString& path, MissingFile missing, const ContentChange& change) {
    constexpr int attempts = 5;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const FileState before = stateOf(path);
        QFile file(path);
        const QFileInfo information(path);
        const bool isThere = information.exists() || information.isSymLink();
        if (!isThere && missing == MissingFile::leftOut) return;
        if (isThere && (!information.isFile() || information.size() > greatestFile ||
                        !file.open(QIODevice::ReadOnly)))
            return;
        const std::optional<QByteArray> changed = change(isThere ? file.readAll() : QByteArray());
        if (!changed) return;
        if (!isThere) QDir().mkpath(information.path());
        QSaveFile rewritten(path);
        if (!rewritten.open(QIODevice::WriteOnly)) return;
        if (!isThere) rewritten.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        rewritten.write(*changed);
        if (stateOf(path) != before) continue;
        rewritten.commit();
        return;
    }
}

} // namespace quillabrae::platform
