// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"

#include "model/RecordCoding.h"
#include "persistence/FileError.h"
#include "persistence/RecoverySessionCoding.h"
#include "platform/FileOperations.h"
#include "platform/Preferences.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <new>

namespace quillabrae::persistence {
namespace {

constexpr QLatin1StringView settingsKey("Quillabrae.settings");

// What a stored value decodes to; nothing where it is absent or unreadable.
template <typename Value>
std::optional<Value> storedValue(const platform::Preferences& preferences, const QString& key) {
    try {
        return model::decodedJson<Value>(preferences.bytes(key));
    } catch (const model::JsonError&) {
        return std::nullopt;
    }
}

template <typename Value>
void storeValue(platform::Preferences& preferences, const QString& key, const Value& value) {
    try {
        preferences.setValue(key, model::encodedJson(value));
    } catch (const model::JsonError&) {
        // What cannot be written leaves the stored value as it is.
    }
}

// Streams to a file, each write in one system call.
class UnbufferedSink final : public model::ByteSink {
public:
    explicit UnbufferedSink(QFile& file) : m_file(file) {}

    void write(std::span<const char> bytes) override {
        if (m_file.write(bytes.data(), std::ssize(bytes)) != std::ssize(bytes))
            throw FileError::notWritten(m_file.fileName(), m_file.errorString());
    }

private:
    QFile& m_file;
};

// The files that a session is written to before they take its place: ".NAME.UUID.writing".
QString temporaryPrefix(const QFileInfo& target) {
    return QStringLiteral(".%1.").arg(target.fileName());
}

constexpr QLatin1StringView temporarySuffix(".writing");

// A write that was killed leaves its temporary file behind; the next one takes it away.
void removeStaleTemporaries(const QFileInfo& target) {
    platform::FileOperations& files = platform::systemFileOperations();
    const QString folder = target.absolutePath();
    for (const QString& name : files.entries(folder)) {
        const bool isOurs =
            name.startsWith(temporaryPrefix(target)) && name.endsWith(temporarySuffix);
        if (isOurs) QFile::remove(folder + QLatin1Char('/') + name);
    }
}

void writeSession(const PaintAutosaveSession& session, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        throw FileError::notWritten(path, file.errorString());
    // Unsaved work is its owner's alone.
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    UnbufferedSink sink(file);
    model::encodeTo(sink, session);
}

// A file with room behind its bytes for the JSON reader.
std::optional<QByteArray> readForJson(const QString& path) {
    if (!QFileInfo(path).isFile()) return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return std::nullopt;
    QByteArray bytes;
    bytes.reserve(file.size() + model::JsonReader::padding);
    bytes.resize(file.size());
    if (file.read(bytes.data(), bytes.size()) != bytes.size()) return std::nullopt;
    return bytes;
}

} // namespace

model::PaintAppSettings AppPersistenceService::loadSettings(
    const platform::Preferences& preferences) {
    return storedValue<model::PaintAppSettings>(preferences, settingsKey)
        .value_or(model::PaintAppSettings());
}

void AppPersistenceService::saveSettings(platform::Preferences& preferences,
                                         const model::PaintAppSettings& settings) {
    storeValue(preferences, settingsKey, settings);
}

std::vector<model::RecentProject> AppPersistenceService::loadRecents(
    const platform::Preferences& preferences, const QString& key) {
    return storedValue<std::vector<model::RecentProject>>(preferences, key)
        .value_or(std::vector<model::RecentProject>());
}

void AppPersistenceService::saveRecents(platform::Preferences& preferences, const QString& key,
                                        const std::vector<model::RecentProject>& recents) {
    storeValue(preferences, key, recents);
}

QString AppPersistenceService::recoveryFile(const QString& autosaveFolder) {
    return autosaveFolder + QStringLiteral("/Recovery.quillabraesession");
}

QString AppPersistenceService::closedWorkFile(const QString& autosaveFolder) {
    return autosaveFolder + QStringLiteral("/Closed.quillabraesession");
}

std::optional<PaintAutosaveSession> AppPersistenceService::loadAutosavedSession(
    const QString& file) {
    try {
        std::optional<QByteArray> json = readForJson(file);
        if (!json) return std::nullopt;
        PaintAutosaveSession session;
        session.savedAt = QDateTime::currentDateTimeUtc();
        model::JsonReader reader(*std::exchange(json, std::nullopt));
        model::decodeOnto(session, reader);
        return session;
    } catch (const model::JsonError&) {
        return std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

void AppPersistenceService::saveAutosavedSession(const PaintAutosaveSession& session,
                                                 const QString& file) {
    const QFileInfo target(file);
    const QString temporary = target.absolutePath() + QLatin1Char('/') + temporaryPrefix(target) +
                              QUuid::createUuid().toString(QUuid::WithoutBraces) + temporarySuffix;
    try {
        platform::systemFileOperations().makePath(target.absolutePath());
        removeStaleTemporaries(target);
        writeSession(session, temporary);
        // The rename alone makes the write whole or nothing for every process, this one's killing
        // included, because all of them see what the kernel holds. Bringing it to the disk would
        // help only against a power cut, and would make each stroke wait for the disk.
        platform::systemFileOperations().rename(temporary, target.absoluteFilePath());
    } catch (const platform::FileOperationError& error) {
        QFile::remove(temporary);
        throw FileError::notWritten(file, error.description());
    } catch (const model::JsonError& error) {
        QFile::remove(temporary);
        throw FileError(error.description());
    } catch (...) {
        QFile::remove(temporary);
        throw;
    }
}

void AppPersistenceService::clearAutosavedSession(const QString& file) {
    QFile::remove(file);
    removeStaleTemporaries(QFileInfo(file));
}

} // namespace quillabrae::persistence
