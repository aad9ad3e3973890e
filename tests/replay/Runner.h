// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>

#include <cstdio>

namespace quillabrae::replay {

class Session;

/// What follows a line that failed.
enum class AfterFailure { goOn, stop };

/// Runs the lines of scripts in a session and prints what came of each.
class Runner {
public:
    Runner(Session& session, AfterFailure afterFailure);

    /// Runs a script to its end, to the end of the session, or to the first failure that stops it.
    /// Each line runs before the next one is read.
    void run(std::FILE* script);
    bool hasFailed() const { return m_hasFailed; }
    /// Whether no further script may run.
    bool isOver() const;

private:
    void runText(const QByteArray& text, int lineNumber);

    Session& m_session;
    AfterFailure m_afterFailure;
    bool m_hasFailed = false;
};

} // namespace quillabrae::replay
