// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QProcess>

#include <chrono>
#include <optional>

namespace quillabrae::replay {

/// A running quillabrae-replay that is fed line by line.
class ReplayProcess {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    explicit ReplayProcess(const QString& home);
    /// Kills it if it still runs.
    ~ReplayProcess();

    /// Sends a line; returns what it answered, or nothing when the deadline came first.
    std::optional<QJsonObject> run(const QByteArray& line, Deadline deadline);
    void kill();

private:
    QProcess m_process;
    QByteArray m_received;
};

} // namespace quillabrae::replay
