// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XdgRecentDocuments.h"

#include "platform/ApplicationIdentity.h"
#include "platform/HelperProcess.h"
#include "platform/RecentlyUsedList.h"

#include <QSettings>
#include <QStandardPaths>

#include <chrono>
#include <string_view>
#include <utility>

namespace quillabrae::platform {
namespace {

const QString programName = QStringLiteral("Quillabrae");

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
    : m_file(std::move(file)), m_missing(missing), m_isWanted(std::move(isWanted)) {}

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
    m_work.finish();
}

void XdgRecentDocuments::change(ContentChange change) {
    m_work.run([this, change = std::move(change)] { changeNow(change); });
}

void XdgRecentDocuments::changeNow(const ContentChange& change) const {
    if (m_isWanted()) rewriteSharedFile(m_file, m_missing, change);
}

} // namespace quillabrae::platform
