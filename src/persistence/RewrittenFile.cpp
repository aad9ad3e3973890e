// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RewrittenFile.h"

#include "persistence/BlockSink.h"
#include "persistence/FileError.h"
#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"
#include "platform/WriteBack.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace quillabrae::persistence {
namespace {

using platform::FileOperations;

// The names that one file goes by.
class Names {
public:
    explicit Names(const QString& target)
        : m_target(QFileInfo(target).absoluteFilePath()), m_hidden(hiddenName(QFileInfo(target))) {}

    const QString& target() const { return m_target; }
    QString folder() const { return QFileInfo(m_target).absolutePath(); }
    QString spare() const { return folder() + m_hidden + QStringLiteral("spare"); }
    QString newWriting() const {
        return folder() + m_hidden + QUuid::createUuid().toString(QUuid::WithoutBraces) + suffix();
    }
    bool isWriting(const QString& path) const {
        return path.startsWith(folder() + m_hidden) && path.endsWith(suffix());
    }

private:
    static QString hiddenName(const QFileInfo& target) {
        return QStringLiteral("/.%1.").arg(target.fileName());
    }
    static QString suffix() { return QStringLiteral(".writing"); }

    QString m_target;
    QString m_hidden;
};

void removeKilledWrites(FileOperations& files, const Names& names) {
    const QString folder = names.folder();
    for (const QString& entry : files.entries(folder)) {
        const QString path = folder + QLatin1Char('/') + entry;
        if (names.isWriting(path)) QFile::remove(path);
    }
}

// Takes the spare under a name that no other process uses, if there is one.
void takeSpare(FileOperations& files, const Names& names, const QString& writing) {
    const QString spare = names.spare();
    const QFileInfo information(spare);
    // Writing over what a link points to would reach beyond this folder.
    if (!information.isFile() || information.isSymLink()) return;
    try {
        files.rename(spare, writing);
    } catch (const platform::FileOperationError&) {
        // Then the content goes into a new file.
    }
}

void writeContent(const Names& names, const QString& path,
                  const std::function<void(model::ByteSink&)>& write) {
    constexpr QFileDevice::Permissions own = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QFile file(path);
    // Reading is asked for only because the file would be emptied otherwise.
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered, own))
        throw FileError::notWritten(names.target(), file.errorString());
    // A spare may have been open to others.
    file.setPermissions(own);
    BlockSink sink(file, names.target());
    write(sink);
    sink.finish();
    platform::startWriteBack(file);
}

void takePlace(FileOperations& files, const Names& names, const QString& writing) {
    const bool isFile = QFileInfo(names.target()).isFile();
    if (!isFile || !files.exchange(writing, names.target())) {
        files.rename(writing, names.target());
        return;
    }
    try {
        files.rename(writing, names.spare());
    } catch (const platform::FileOperationError&) {
        // The new content is in its place; the old one is only worth keeping.
        QFile::remove(writing);
    }
}

} // namespace

void rewriteFile(const QString& target, const std::function<void(model::ByteSink&)>& write) {
    FileOperations& files = platform::systemFileOperations();
    const Names names(target);
    const QString writing = names.newWriting();
    try {
        platform::makePrivateFolder(names.folder());
        removeKilledWrites(files, names);
        takeSpare(files, names, writing);
        writeContent(names, writing, write);
        takePlace(files, names, writing);
    } catch (const platform::FileOperationError& error) {
        QFile::remove(writing);
        throw FileError::notWritten(target, error.description());
    } catch (...) {
        QFile::remove(writing);
        throw;
    }
}

QString replacedContentOf(const QString& target) {
    return Names(target).spare();
}

void bringBackReplacedContent(const QString& target, const QString& aside) {
    FileOperations& files = platform::systemFileOperations();
    const Names names(target);
    try {
        if (files.exchange(names.spare(), names.target())) {
            files.rename(names.spare(), aside);
        } else {
            files.rename(names.target(), aside);
            files.rename(names.spare(), names.target());
        }
    } catch (const platform::FileOperationError& error) {
        throw FileError::notWritten(target, error.description());
    }
}

void removeRewrittenFile(const QString& target) {
    const Names names(target);
    QFile::remove(names.target());
    QFile::remove(names.spare());
    removeKilledWrites(platform::systemFileOperations(), names);
}

} // namespace quillabrae::persistence
