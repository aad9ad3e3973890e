// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PrivateFile.h"

#include "platform/FileOperations.h"

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

[[noreturn]] void fail(const QString& path) {
    throw FileOperationError(path, errno);
}

void writeAll(QFile& file, const QByteArray& bytes) {
    // QFile keeps the reason of a failed write to itself.
    errno = 0;
    if (file.write(bytes) != bytes.size() || !file.flush() || ::fsync(file.handle()) != 0) {
        if (errno == 0) errno = EIO;
        fail(file.fileName());
    }
}

} // namespace

QString writePrivateFile(const QString& folder, const QString& name, const QByteArray& bytes) {
    FileOperations& operations = systemFileOperations();
    operations.removeTree(folder);
    operations.makePath(QFileInfo(folder).path());
    if (::mkdir(QFile::encodeName(folder).constData(), ownFolder) != 0) fail(folder);
    const QString path = folder + QLatin1Char('/') + name;
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownFile);
    if (descriptor < 0) fail(path);
    QFile file(path);
    if (!file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                   QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        errno = EIO;
        fail(path);
    }
    writeAll(file, bytes);
    return path;
}

} // namespace quillabrae::platform
