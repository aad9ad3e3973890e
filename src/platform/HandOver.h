// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/StartRequest.h"

#include <QByteArray>

/// What a second start says to the running program: a magic word, the length of what follows as
/// four bytes with the high byte first, and, one a line, the URLs of files, links and an action,
/// and "activation-token:" with the desktop's token.
namespace quillabrae::platform::HandOver {

constexpr qsizetype maximumPayload = qsizetype{16} * 1024 * 1024;
/// One for each URL, and the token's.
constexpr qsizetype maximumLineCount = maximumUrlCount + 1;
inline constexpr char answer[] = "taken\n";

QByteArray message(const StartRequest& request);

enum class Progress { incomplete, complete, malformed };

struct Reading {
    Progress progress = Progress::incomplete;
    /// What a complete message asks for; lines of any other kind are passed over.
    StartRequest request{};
};

/// What has come of a message so far.
Reading read(const QByteArray& received);

} // namespace quillabrae::platform::HandOver
