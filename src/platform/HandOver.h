// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <optional>

/// What a second start says to the running program: a magic word, the length of what follows as
/// four bytes with the high byte first, and the URLs of files and program links, one a line.
namespace quillabrae::platform::HandOver {

constexpr qsizetype maximumPayload = qsizetype{16} * 1024 * 1024;
inline constexpr char answer[] = "taken\n";

QByteArray message(const QList<QUrl>& urls);

enum class Progress { incomplete, complete, malformed };

struct Reading {
    Progress progress = Progress::incomplete;
    /// The absolute file URLs and the program links of a complete message; other lines are passed
    /// over.
    QList<QUrl> files{};
    QList<QUrl> links{};
};

/// What has come of a message so far.
Reading read(const QByteArray& received);

} // namespace quillabrae::platform::HandOver
