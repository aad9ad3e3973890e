// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::services {

/// What a server may know of the program and of the system that it runs on.
struct ProgramIdentity {
    /// The version that users see, or "unknown".
    QString version;
    /// Tells builds of one version apart, or "unknown".
    QString build;
    /// "release" or "beta".
    QString channel;
    /// A language tag, such as "en-GB".
    QString language;
    /// The system's name and version, for people.
    QString operatingSystemVersion;
};

/// This process. Empty words count as absent.
ProgramIdentity identityOfThisProgram(const QString& version, const QString& build,
                                      const QString& channel);

} // namespace quillabrae::services
