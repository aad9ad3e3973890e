// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LastCrashReport.h"

#include "platform/CrashReporter.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace quillabrae::platform {
namespace {

/// The latest first: their names begin with the time.
QFileInfoList reportsIn(const QString& folder) {
    const QDir reports(folder);
    if (!reports.exists()) return {};
    QFileInfoList files = reports.entryInfoList({QStringLiteral("crash-*.txt")},
                                                QDir::Files | QDir::NoSymLinks, QDir::Name);
    std::ranges::reverse(files);
    return files;
}

bool isPlain(char letter) {
    return letter == '\n' || (letter >= ' ' && letter <= '~');
}

std::optional<QString> readReport(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    const QByteArray content = file.read(maximumCrashReport + 1);
    const bool isReport = content.size() <= maximumCrashReport &&
                          content.startsWith(crashReportTitle) &&
                          std::ranges::all_of(content, isPlain);
    if (!isReport) return std::nullopt;
    return QString::fromLatin1(content);
}

} // namespace

std::optional<QString> CrashFolder::text() const {
    for (const QFileInfo& file : reportsIn(m_folder)) {
        if (auto report = readReport(file.absoluteFilePath())) return report;
    }
    return std::nullopt;
}

void CrashFolder::forget() {
    for (const QFileInfo& file : reportsIn(m_folder)) QFile::remove(file.absoluteFilePath());
}

void CrashFolder::thinOut() {
    const QFileInfoList files = reportsIn(m_folder);
    for (const QFileInfo& file : files.mid(std::min(mostReports, files.size())))
        QFile::remove(file.absoluteFilePath());
}

} // namespace quillabrae::platform
