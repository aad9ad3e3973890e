// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SharedFile.h"

#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
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

/// A new content on its way. Its name says whose it is: ".NAME.PROCESS.writing".
class Writing {
public:
    explicit Writing(const QFileInfo& target)
        : m_folder(target.dir()), m_name(target.fileName()), m_path(pathOf(::getpid())) {
        removeLeft();
    }
    ~Writing() { QFile::remove(m_path); }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

    const QString& path() const { return m_path; }

private:
    QString pathOf(pid_t process) const {
        return m_folder.filePath(QStringLiteral(".%1.%2.writing").arg(m_name).arg(process));
    }
    /// What programs that were killed have left, and this one before it had its number.
    void removeLeft() const {
        const QRegularExpression left(QStringLiteral(R"(^\.%1\.(\d{1,9})\.writing$)")
                                          .arg(QRegularExpression::escape(m_name)));
        for (const QString& name : m_folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
            const auto match = left.match(name);
            if (!match.hasMatch()) continue;
            const pid_t process = match.captured(1).toInt();
            if (process == ::getpid() || (::kill(process, 0) != 0 && errno == ESRCH))
                QFile::remove(m_folder.filePath(name));
        }
    }

    QDir m_folder;
    QString m_name;
    QString m_path;
};

/// Nothing where not all of it can be read.
std::optional<QByteArray> contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    const QByteArray content = file.readAll();
    const bool isWhole = file.error() == QFileDevice::NoError && content.size() == file.size();
    return isWhole ? std::optional(content) : std::nullopt;
}

enum class Attempt { done, wasOvertaken };

/// Puts a content in the place of the one that `before` tells of.
Attempt replace(const QString& path, const FileState& before, const QByteArray& content) {
    FileOperations& operations = systemFileOperations();
    const QFileInfo information(path);
    // A link stays, and what it points to is replaced.
    const QFileInfo target(information.isSymLink() ? information.canonicalFilePath() : path);
    try {
        if (!before) operations.makePath(target.path());
        const Writing writing(target);
        createPrivateFile(writing.path(), content);
        if (before) operations.adoptPermissions(target.filePath(), writing.path());
        if (stateOf(path) != before) return Attempt::wasOvertaken;
        operations.rename(writing.path(), target.filePath());
    } catch (const FileOperationError&) {
        // It is left as it was.
    }
    return Attempt::done;
}

} // namespace

void rewriteSharedFile(const QString& path, MissingFile missing, const ContentChange& change) {
    constexpr int attempts = 5;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const FileState before = stateOf(path);
        const QFileInfo information(path);
        const bool isThere = information.exists() || information.isSymLink();
        if (!isThere && missing == MissingFile::leftOut) return;
        if (isThere && (!information.isFile() || information.size() > greatestFile)) return;
        const auto content = isThere ? contentOf(path) : QByteArray();
        if (!content) return;
        const std::optional<QByteArray> changed = change(*content);
        if (!changed || replace(path, before, *changed) == Attempt::done) return;
    }
}

} // namespace quillabrae::platform
