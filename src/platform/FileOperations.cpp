// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileOperations.h"

#include "platform/SystemCalls.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtGlobal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace quillabrae::platform {
namespace {

constexpr std::size_t writeBufferSize = std::size_t{256} * 1024;

/// Leaves `errno` as it is.
bool isFolder(const QByteArray& name) {
    const int error = errno;
    struct stat information {};
    const bool is = ::stat(name.constData(), &information) == 0 && S_ISDIR(information.st_mode);
    errno = error;
    return is;
}

class SystemFile final : public DurableFile {
public:
    explicit SystemFile(const QString& path)
        : m_path(path), m_file(retrying([&] {
              return ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
          })) {
        if (!m_file.isOpen()) failAt(m_path);
        m_buffer.reserve(writeBufferSize);
    }

    void write(std::span<const char> bytes) override {
        if (m_buffer.size() + bytes.size() > writeBufferSize) flush();
        if (bytes.size() >= writeBufferSize)
            writeThrough(bytes);
        else
            m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
    }

    void finish() override {
        flush();
        if (retrying([this] { return ::fsync(m_file.value()); }) != 0) failAt(m_path);
        if (m_file.close() != 0) failAt(m_path);
    }

private:
    void flush() {
        writeThrough(m_buffer);
        m_buffer.clear();
    }

    void writeThrough(std::span<const char> bytes) {
        while (!bytes.empty()) {
            const ssize_t written =
                retrying([&] { return ::write(m_file.value(), bytes.data(), bytes.size()); });
            if (written < 0) failAt(m_path);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
    }

    QString m_path;
    Descriptor m_file;
    std::vector<char> m_buffer;
};

class SystemFileOperations final : public FileOperations {
public:
    void makePath(const QString& folder) override {
        const QByteArray name = QFile::encodeName(folder);
        const auto make = [&] { return ::mkdir(name.constData(), 0777); };
        if (retrying(make) == 0 || isFolder(name)) return;
        const QString parent = QFileInfo(folder).path();
        if (errno != ENOENT || parent == folder) failAt(folder);
        makePath(parent);
        if (retrying(make) != 0 && !isFolder(name)) failAt(folder);
    }

    std::unique_ptr<DurableFile> createFile(const QString& path) override {
        return std::make_unique<SystemFile>(path);
    }

    void syncFolder(const QString& folder) override {
        const Descriptor descriptor(retrying([&] {
            return ::open(QFile::encodeName(folder).constData(),
                          O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        }));
        if (!descriptor.isOpen()) failAt(folder);
        const int result = retrying([&] { return ::fsync(descriptor.value()); });
        if (result != 0 && errno != EINVAL && errno != ENOTSUP && errno != EROFS) failAt(folder);
    }

    bool exchange(const QString& a, const QString& b) override {
        const int result = retrying([&] {
            return ::renameat2(AT_FDCWD, QFile::encodeName(a).constData(), AT_FDCWD,
                               QFile::encodeName(b).constData(), RENAME_EXCHANGE);
        });
        if (result == 0) return true;
        if (errno == EINVAL || errno == ENOSYS || errno == ENOTSUP) return false;
        failAt(b);
    }

    void rename(const QString& from, const QString& to) override {
        const int result = retrying([&] {
            return std::rename(QFile::encodeName(from).constData(),
                               QFile::encodeName(to).constData());
        });
        if (result != 0) failAt(to);
    }

    void removeTree(const QString& path) override {
        const QByteArray name = QFile::encodeName(path);
        struct stat information {};
        if (::lstat(name.constData(), &information) != 0) {
            if (errno == ENOENT) return;
            failAt(path);
        }
        if (!S_ISDIR(information.st_mode)) {
            const int result = retrying([&] { return ::unlink(name.constData()); });
            if (result != 0 && errno != ENOENT) failAt(path);
            return;
        }
        for (const QString& entry : entries(path)) removeTree(path + u'/' + entry);
        const int result = retrying([&] { return ::rmdir(name.constData()); });
        if (result != 0 && errno != ENOENT) failAt(path);
    }

    void adoptPermissions(const QString& from, const QString& to) override {
        struct stat model {};
        struct stat information {};
        const QByteArray name = QFile::encodeName(to);
        if (::stat(QFile::encodeName(from).constData(), &model) != 0) return;
        if (::stat(name.constData(), &information) != 0) return;
        if ((model.st_mode & S_IFMT) != (information.st_mode & S_IFMT)) return;
        // Where it fails the thing keeps the rights it was made with.
        static_cast<void>(
            retrying([&] { return ::chmod(name.constData(), model.st_mode & 0777); }));
    }

    bool isWritable(const QString& path) override {
        return ::euidaccess(QFile::encodeName(path).constData(), W_OK) == 0;
    }

    bool exists(const QString& path) override {
        struct stat information {};
        return ::lstat(QFile::encodeName(path).constData(), &information) == 0;
    }

    QStringList entries(const QString& folder) override {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                      QDir::NoDotAndDotDot);
    }
};

} // namespace

FileOperationError::FileOperationError(const QString& path, int errorNumber)
    : std::runtime_error(std::strerror(errorNumber)), m_path(path), m_errorNumber(errorNumber) {}

QString FileOperationError::description() const {
    return qt_error_string(m_errorNumber);
}

FileOperations& systemFileOperations() {
    static SystemFileOperations operations;
    return operations;
}

} // namespace quillabrae::platform
