// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PrivateFile.h"

#include "platform/FileOperations.h"
#include "platform/SystemCalls.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quillabrae::platform {
namespace {

constexpr mode_t ownFolder = 0700;
constexpr mode_t ownFile = 0600;

bool isWritten(int file, const QByteArray& bytes, Reaching disk) {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written = retrying([&] {
            return ::write(file, bytes.constData() + done,
                           static_cast<std::size_t>(bytes.size() - done));
        });
        if (written < 0) return false;
        done += written;
    }
    return disk == Reaching::later || retrying([&] { return ::fsync(file); }) == 0;
}

} // namespace

void makePrivateFolder(const QString& folder) {
    systemFileOperations().makePath(QFileInfo(folder).path());
    const QByteArray name = QFile::encodeName(folder);
    if (retrying([&] { return ::mkdir(name.constData(), ownFolder); }) == 0) return;
    const int reason = errno;
    struct stat facts {};
    if (reason != EEXIST || !QFileInfo(folder).isDir()) {
        errno = reason == EEXIST ? ENOTDIR : reason;
        failAt(folder);
    }
    const bool isOwn = ::lstat(name.constData(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
                       facts.st_uid == ::geteuid();
    if (isOwn && (facts.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        static_cast<void>(::chmod(name.constData(), facts.st_mode & S_IRWXU));
}

void createPrivateFile(const QString& path, const QByteArray& bytes, Reaching disk) {
    const QByteArray name = QFile::encodeName(path);
    Descriptor file(retrying([&] {
        return ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                      ownFile);
    }));
    if (!file.isOpen()) failAt(path);
    const bool isWhole = isWritten(file.value(), bytes, disk);
    const int reason = errno;
    if (file.close() == 0 && isWhole) return;
    const int failure = isWhole ? errno : reason;
    ::unlink(name.constData());
    throw FileOperationError(path, failure);
}

void placePrivateFile(const QString& path, const QByteArray& bytes, Reaching disk) {
    const QString part = path + unfinishedSuffix;
    createPrivateFile(part, bytes, disk);
    try {
        systemFileOperations().rename(part, path);
    } catch (const FileOperationError&) {
        ::unlink(QFile::encodeName(part).constData());
        throw;
    }
}

QString writePrivateFile(const QString& folder, const QString& name, const QByteArray& bytes) {
    FileOperations& operations = systemFileOperations();
    operations.removeTree(folder);
    operations.makePath(QFileInfo(folder).path());
    const QByteArray folderName = QFile::encodeName(folder);
    if (retrying([&] { return ::mkdir(folderName.constData(), ownFolder); }) != 0) failAt(folder);
    const QString path = folder + QLatin1Char('/') + name;
    placePrivateFile(path, bytes);
    return path;
}

} // namespace quillabrae::platform
