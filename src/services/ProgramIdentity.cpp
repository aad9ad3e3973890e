// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/ProgramIdentity.h"

#include <QLocale>
#include <QSysInfo>

namespace quillabrae::services {

namespace {

QString orUnknown(const QString& word) {
    return word.isEmpty() ? QStringLiteral("unknown") : word;
}

} // namespace

ProgramIdentity identityOfThisProgram(const QString& version, const QString& build,
                                      const QString& channel) {
    return {
        .version = orUnknown(version),
        .build = orUnknown(build),
        .channel = channel.isEmpty() ? QStringLiteral("release") : channel,
        .language = QLocale().name().replace(u'_', u'-'),
        .operatingSystemVersion = QSysInfo::prettyProductName(),
    };
}

} // namespace quillabrae::services
