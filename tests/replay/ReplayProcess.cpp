// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/ReplayProcess.h"

#include <QJsonDocument>

#include <stdexcept>

namespace quillabrae::replay {

ReplayProcess::ReplayProcess(const QString& home) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(QUILLABRAE_REPLAY),
                    {QStringLiteral("--home"), home, QStringLiteral("-")});
    if (!m_process.waitForStarted()) throw std::runtime_error("quillabrae-replay does not start");
}

ReplayProcess::~ReplayProcess() {
    kill();
}

std::optional<QJsonObject> ReplayProcess::run(const QByteArray& line, Deadline deadline) {
    m_process.write(line + '\n');
    m_process.waitForBytesWritten();
    while (!m_received.contains('\n')) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0 || !m_process.waitForReadyRead(static_cast<int>(left.count())))
            return std::nullopt;
        m_received += m_process.readAllStandardOutput();
    }
    const qsizetype end = m_received.indexOf('\n');
    const QByteArray answer = m_received.left(end);
    m_received.remove(0, end + 1);
    return QJsonDocument::fromJson(answer).object();
}

void ReplayProcess::kill() {
    m_process.kill();
    m_process.waitForFinished();
}

} // namespace quillabrae::replay
