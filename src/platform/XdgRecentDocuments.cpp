// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XdgRecentDocuments.h"

#include "platform/ApplicationIdentity.h"
#include "platform/HelperProcess.h"
#include "platform/RecentlyUsedList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

#include <sys/stat.h>

#include <chrono>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace quillabrae::platform {
namespace {

const QString programName = QStringLiteral("Quillabrae");

/// Lists of the desktop's programs are a hundred kilobytes long.
constexpr qint64 greatestList = qint64{16} << 20U;

QVariant configured(const QString& file, const QString& key) {
    const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, file);
    return path.isEmpty() ? QVariant() : QSettings(path, QSettings::IniFormat).value(key);
}

bool isOff(const QVariant& value) {
    return value.isValid() && !value.toBool();
}

/// GNOME keeps its settings where only its own program reads them.
bool gnomeNotesRecentFiles() {
    constexpr std::chrono::seconds patience{2};
    const SharedMemory nothing;
    SharedMemory answer;
    const HelperEnd end = runHelper(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"), QStringLiteral("exec gsettings get org.gnome.desktop.privacy "
                                              "remember-recent-files >&4 2>/dev/null")},
        nothing, answer, patience, {});
    if (end != HelperEnd::succeeded) return true;
    const auto bytes = answer.bytes();
    return !std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size())
                .starts_with("false");
}

/// What tells one state of a file from another; nothing for no file.
using FileState = std::optional<std::tuple<ino_t, off_t, time_t, long>>;

FileState stateOf(const QString& path) {
    struct stat facts {};
    if (::stat(QFile::encodeName(path).constData(), &facts) != 0) return std::nullopt;
    return std::tuple(facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec);
}

} // namespace

bool desktopNotesRecentFiles() {
    for (const char* file : {"gtk-4.0/settings.ini", "gtk-3.0/settings.ini"}) {
        if (isOff(configured(QString::fromLatin1(file),
                             QStringLiteral("Settings/gtk-recent-files-enabled"))))
            return false;
    }
    return !isOff(configured(QStringLiteral("kdeglobals"),
                             QStringLiteral("RecentDocuments/UseRecent"))) &&
           gnomeNotesRecentFiles();
}

XdgRecentDocuments::XdgRecentDocuments(QString file, Missing missing,
                                       std::function<bool()> isWanted)
    : m_file(std::move(file)), m_missing(missing), m_isWanted(std::move(isWanted)) {
    m_thread.setMaxThreadCount(1);
}

QString XdgRecentDocuments::standardFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/recently-used.xbel");
}

XdgRecentDocuments::Missing XdgRecentDocuments::standardMissing() {
    return qEnvironmentVariableIsEmpty("XDG_CURRENT_DESKTOP") ? Missing::leftOut : Missing::made;
}

void XdgRecentDocuments::add(const QUrl& project) {
    const RecentlyUsedList::Use use{project, projectType, programName,
                                    QStringLiteral("quillabrae %u"),
                                    QDateTime::currentDateTimeUtc()};
    change([use](const QByteArray& list) { return RecentlyUsedList::withUse(list, use); });
}

void XdgRecentDocuments::remove(const QUrl& project) {
    change([project](const QByteArray& list) {
        return RecentlyUsedList::withoutUses(list, project, programName);
    });
}

void XdgRecentDocuments::finish() {
    m_thread.waitForDone();
}

void XdgRecentDocuments::change(Change change) {
    m_thread.start([this, change = std::move(change)] { changeNow(change); });
}

void XdgRecentDocuments::changeNow(const Change& change) const {
    if (!m_isWanted()) return;
    // Other programs change the list too, and there is no lock: one that did so meanwhile is asked
    // again for what it has now.
    constexpr int attempts = 5;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const FileState before = stateOf(m_file);
        QFile file(m_file);
        const QFileInfo information(m_file);
        const bool isThere = information.exists() || information.isSymLink();
        if (!isThere && m_missing == Missing::leftOut) return;
        if (isThere && (!information.isFile() || information.size() > greatestList ||
                        !file.open(QIODevice::ReadOnly)))
            return;
        const std::optional<QByteArray> changed = change(isThere ? file.readAll() : QByteArray());
        if (!changed) return;
        if (!isThere) QDir().mkpath(information.path());
        QSaveFile rewritten(m_file);
        if (!rewritten.open(QIODevice::WriteOnly)) return;
        // Which files a user has is nobody else's business.
        if (!isThere) rewritten.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        rewritten.write(*changed);
        if (stateOf(m_file) != before) continue;
        rewritten.commit();
        return;
    }
}

} // namespace quillabrae::platform
