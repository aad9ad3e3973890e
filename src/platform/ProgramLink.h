// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

/// The program's own links, as in "quillabrae://auth/callback": the desktop starts the program with
/// what was followed in a browser. Anybody can write one, so nothing in it is to be believed.
namespace quillabrae::platform {

inline const QString programLinkScheme = QStringLiteral("quillabrae");

/// A longer link is none: its length, encoded.
constexpr qsizetype maximumProgramLink = 8192;

/// Whether an argument is meant as a link, well-formed or not; then it names no file.
bool isMeantAsProgramLink(QStringView argument);

bool isProgramLink(const QUrl& url);

} // namespace quillabrae::platform
