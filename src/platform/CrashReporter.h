// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace quillabrae::platform {

/// What a crash report begins with.
inline constexpr char crashReportTitle[] = "Quillabrae crash report 1\n";
/// No report is longer.
constexpr qsizetype maximumCrashReport = qsizetype{16} * 1024;

/// From now on a fatal signal leaves a short report in `folder` before it takes its usual course,
/// with a core dump where the system makes them. The report names the version, the signal, and the
/// stack as offsets into the program and its libraries, whose file names alone it gives: no paths
/// and nothing of what the program was working on. Only its owner can read it.
///
/// A stack that has overflowed is reported on the thread that calls this. Where somebody handles
/// fatal signals already, a sanitizer for one, nothing is changed. Called once.
void reportCrashesTo(const QString& folder, const QByteArray& version);

} // namespace quillabrae::platform
