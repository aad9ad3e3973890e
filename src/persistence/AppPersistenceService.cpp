// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"

#include "model/RecordCoding.h"
#include "persistence/FileError.h"
#include "persistence/PictureCheck.h"
#include "persistence/RecoverySessionCoding.h"
#include "persistence/RewrittenFile.h"
#include "platform/FileOperations.h"
#include "platform/MappedFile.h"
#include "platform/Preferences.h"
#include "platform/WriteBack.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

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

// A file that cannot be mapped, with room behind its bytes for the JSON reader.
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

PaintAutosaveSession sessionFrom(model::JsonReader& reader) {
    PaintAutosaveSession session;
    session.savedAt = QDateTime::currentDateTimeUtc();
    model::decodeOnto(session, reader);
    return session;
}

std::optional<PaintAutosaveSession> readSession(const QString& path) {
    static_assert(platform::MappedFile::padding >= std::size_t{model::JsonReader::padding});
    try {
        if (const auto file = platform::MappedFile::open(path)) {
            model::JsonReader reader(file->text());
            return sessionFrom(reader);
        }
        std::optional<QByteArray> json = readForJson(path);
        if (!json) return std::nullopt;
        model::JsonReader reader(*std::exchange(json, std::nullopt));
        return sessionFrom(reader);
    } catch (const model::JsonError&) {
        return std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

// A name that is free for what cannot be read.
QString asideName(const QString& file) {
    platform::FileOperations& files = platform::systemFileOperations();
    const QString start = QFileInfo(file).absolutePath() + QStringLiteral("/Unreadable");
    const QString extension = QStringLiteral(".quillabraesession");
    QString name = start + extension;
    for (int number = 2; files.exists(name); ++number)
        name = start + QStringLiteral(" %1").arg(number) + extension;
    return name;
}

enum class Successor { none, replacedContent };

void setAside(const QString& file, Successor successor) {
    try {
        const QString aside = asideName(file);
        if (successor == Successor::replacedContent)
            bringBackReplacedContent(file, aside);
        else
            platform::systemFileOperations().rename(file, aside);
    } catch (const FileError&) {
        // A folder in which nothing can be renamed is one in which nothing is overwritten.
    } catch (const platform::FileOperationError&) {
        // The same.
    }
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

std::optional<PaintAutosaveSession> AppPersistenceService::loadAutosavedSession(
    const QString& file) {
    return readSession(file);
}

std::optional<PaintAutosaveSession> AppPersistenceService::recoverAutosavedSession(
    const QString& file) {
    if (!QFileInfo(file).isFile()) return std::nullopt;
    auto session = readSession(file);
    const bool isTorn =
        session && platform::isFromBeforeSystemStart(file) && !hasWholePictures(*session);
    if (session && !isTorn) return session;
    auto replaced = readSession(replacedContentOf(file));
    // Work with a torn picture in it is better than none.
    if (session && !(replaced && hasWholePictures(*replaced))) return session;
    setAside(file, replaced ? Successor::replacedContent : Successor::none);
    return replaced;
}

void AppPersistenceService::saveAutosavedSession(const PaintAutosaveSession& session,
                                                 const QString& file) {
    try {
        rewriteFile(file, [&](model::ByteSink& sink) { model::encodeTo(sink, session); });
    } catch (const model::JsonError& error) {
        throw FileError(error.description());
    }
}

void AppPersistenceService::clearAutosavedSession(const QString& file) {
    removeRewrittenFile(file);
}

} // namespace quillabrae::persistence
