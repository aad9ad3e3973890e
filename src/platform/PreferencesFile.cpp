// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PreferencesFile.h"

#include "platform/FileLock.h"
#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QThread>
#include <QUuid>

#include <sys/stat.h>

#include <algorithm>

namespace quillabrae::platform {
namespace {

using Values = QHash<QString, QVariant>;

/// The names beside the file.
class Names {
public:
    explicit Names(const QString& file) {
        const QFileInfo information(file);
        // Those who keep their settings elsewhere link to them.
        const QString followed =
            information.isSymLink() ? information.canonicalFilePath() : QString();
        m_target = QFileInfo(followed.isEmpty() ? file : followed).absoluteFilePath();
    }

    QString target() const { return m_target; }
    QDir folder() const { return QFileInfo(m_target).dir(); }
    QString lock() const { return folder().filePath(hidden() + QStringLiteral("lock")); }
    QString newWriting() const {
        return folder().filePath(hidden() + QUuid::createUuid().toString(QUuid::WithoutBraces) +
                                 QStringLiteral(".writing"));
    }
    /// What killed writes have left: theirs, and what QSettings makes beside them.
    QStringList left() const {
        const QRegularExpression name(
            QStringLiteral(R"(^%1[0-9a-f-]{36}\.)").arg(QRegularExpression::escape(hidden())));
        return folder().entryList(QDir::Files | QDir::Hidden | QDir::System).filter(name);
    }

private:
    QString hidden() const { return QStringLiteral(".%1.").arg(QFileInfo(m_target).fileName()); }

    QString m_target;
};

/// Waits for another program's write to end. One that does not is left to itself.
FileLock lockFor(const Names& names) {
    constexpr int attempts = 50;
    constexpr unsigned long pause = 10;
    FileLock lock(names.lock());
    for (int i = 0; i < attempts && lock.state() == FileLock::State::refused; ++i) {
        QThread::msleep(pause);
        lock = FileLock(names.lock());
    }
    return lock;
}

void removeLeft(const Names& names) {
    const QDir folder = names.folder();
    for (const QString& name : names.left()) QFile::remove(folder.filePath(name));
}

bool makeFolder(const QString& folder) {
    try {
        makePrivateFolder(folder);
    } catch (const FileOperationError&) {
        return false;
    }
    return true;
}

bool isReadable(const QString& path) {
    if (!QFileInfo::exists(path)) return true;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll().size() == file.size() &&
           file.error() == QFileDevice::NoError;
}

Values valuesIn(const QString& path) {
    QSettings settings(path, QSettings::IniFormat);
    settings.sync();
    Values values;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys) values.insert(key, settings.value(key));
    return values;
}

/// A number or a truth comes back as its text.
bool isSameValue(const QVariant& a, const QVariant& b) {
    return a == b || a.toByteArray() == b.toByteArray();
}

bool isSame(const Values& written, const Values& read) {
    return written.size() == read.size() &&
           std::all_of(written.keyBegin(), written.keyEnd(), [&](const QString& key) {
               return read.contains(key) && isSameValue(written[key], read[key]);
           });
}

bool isWrittenTo(const QString& path, const Values& values) {
    // What QSettings puts in its place is closed to others from the beginning as well.
    try {
        createPrivateFile(path, QByteArray(),
                          values.isEmpty() ? Reaching::atOnce : Reaching::later);
    } catch (const FileOperationError&) {
        return false;
    }
    // It writes no file that says nothing.
    if (values.isEmpty()) return true;
    {
        QSettings settings(path, QSettings::IniFormat);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            settings.setValue(value.key(), value.value());
        settings.sync();
        if (settings.status() != QSettings::NoError) return false;
    }
    return isReadable(path) && ::chmod(QFile::encodeName(path).constData(), 0600) == 0;
}

bool takesPlace(const QString& writing, const Names& names, const Values& values) {
    // Under another name it is read afresh.
    const QString written = writing + QStringLiteral(".whole");
    try {
        systemFileOperations().rename(writing, written);
        if (isSame(values, valuesIn(written))) {
            systemFileOperations().rename(written, names.target());
            return true;
        }
    } catch (const FileOperationError&) {
        // What is beside the target goes.
    }
    QFile::remove(written);
    return false;
}

} // namespace

bool rewritePreferences(const QString& file, const Values& changes) {
    const Names names(file);
    if (!makeFolder(names.folder().path())) return false;
    const FileLock lock = lockFor(names);
    if (lock.state() == FileLock::State::refused || !isReadable(names.target())) return false;
    removeLeft(names);
    Values values = valuesIn(names.target());
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (change.value().isValid())
            values.insert(change.key(), change.value());
        else
            values.remove(change.key());
    }
    const QString writing = names.newWriting();
    if (isWrittenTo(writing, values) && takesPlace(writing, names, values)) return true;
    removeLeft(names);
    return false;
}

void removeKilledPreferences(const QString& file) {
    const Names names(file);
    if (names.left().isEmpty()) return;
    const FileLock lock(names.lock());
    if (lock.state() != FileLock::State::refused) removeLeft(names);
}

} // namespace quillabrae::platform
