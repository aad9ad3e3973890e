// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/Staging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>

namespace quillabrae::persistence {

using platform::FileOperationError;

namespace {

constexpr QLatin1StringView suffix(".tmp");

QString linkFollowed(const QString& target) {
    const QFileInfo information(QDir::cleanPath(target));
    const QString canonical = information.isSymLink() ? information.canonicalFilePath() : QString();
    return canonical.isEmpty() ? information.absoluteFilePath() : canonical;
}

QString newIdentifier() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

/// The beginning of every staging name of a target. A name too long to be written out beside the
/// identifier is cut.
QString stagingPrefix(const QString& target) {
    constexpr qsizetype longestName = 255;
    constexpr qsizetype identifierLength = 36;
    constexpr qsizetype room = longestName - identifierLength - suffix.size() - 2;
    QString name = QFileInfo(target).fileName();
    while (QFile::encodeName(name).size() > room) name.chop(1);
    if (!name.isEmpty() && name.back().isHighSurrogate()) name.chop(1);
    return u'.' + name + u'.';
}

/// Runs a step whose failure changes nothing for the user.
template <typename Step>
void trying(Step&& step) {
    try {
        step();
    } catch (const FileOperationError&) {
    }
}

} // namespace

Staging::Staging(platform::FileOperations& operations, const QString& target)
    : m_operations(operations),
      m_target(linkFollowed(target)),
      m_folder(QFileInfo(m_target).path()),
      m_path(m_folder + u'/' + stagingPrefix(m_target) + newIdentifier() + suffix) {
    // With no target, the only copy may be what a killed save has left.
    if (!m_operations.exists(m_target)) return;
    if (!m_operations.isWritable(m_target)) throw FileOperationError(m_target, EACCES);
    removeLeftovers();
}

Staging::~Staging() {
    trying([this] { m_operations.removeTree(m_path); });
}

void Staging::commit() {
    takePlace();
    removeLeftovers();
}

void Staging::takePlace() {
    if (m_operations.exists(m_target) && replaceTarget()) return;
    m_operations.rename(m_path, m_target);
    try {
        m_operations.syncFolder(m_folder);
    } catch (const FileOperationError&) {
        trying([this] { m_operations.rename(m_target, m_path); });
        throw;
    }
}

bool Staging::replaceTarget() {
    m_operations.adoptPermissions(m_target, m_path);
    try {
        if (!m_operations.exchange(m_path, m_target)) {
            replaceTargetInSteps();
            return true;
        }
    } catch (const FileOperationError&) {
        if (m_operations.exists(m_target)) throw;
        return false;
    }
    try {
        m_operations.syncFolder(m_folder);
    } catch (const FileOperationError&) {
        trying([this] { m_operations.exchange(m_path, m_target); });
        throw;
    }
    return true;
}

void Staging::replaceTargetInSteps() {
    const QString aside = m_folder + u'/' + stagingPrefix(m_target) + newIdentifier() + suffix;
    m_operations.rename(m_target, aside);
    try {
        m_operations.rename(m_path, m_target);
        m_operations.syncFolder(m_folder);
    } catch (const FileOperationError&) {
        trying([&] { m_operations.rename(m_target, m_path); });
        trying([&] { m_operations.rename(aside, m_target); });
        throw;
    }
}

void Staging::removeLeftovers() {
    const QString prefix = stagingPrefix(m_target);
    for (const QString& name : m_operations.entries(m_folder)) {
        if (!name.startsWith(prefix) || !name.endsWith(suffix)) continue;
        if (name.size() < prefix.size() + suffix.size()) continue;
        const QStringView identifier =
            QStringView(name).sliced(prefix.size()).chopped(suffix.size());
        if (QUuid::fromString(identifier).isNull()) continue;
        trying([&] { m_operations.removeTree(m_folder + u'/' + name); });
    }
}

void writeFileAtomically(platform::FileOperations& operations, const QString& target,
                         const std::function<void(platform::DurableFile&)>& write) {
    if (QFileInfo(target).isDir()) throw FileOperationError(target, EISDIR);
    Staging staging(operations, target);
    const auto file = operations.createFile(staging.path());
    write(*file);
    file->finish();
    staging.commit();
}

} // namespace quillabrae::persistence
