// SPDX-License-Identifier: GPL-3.0-or-later
// Time, repetition and the ends of a run.
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>

#include <algorithm>
#include <vector>

namespace quillabrae::replay {
namespace {

QJsonValue wait(Session& session, const Arguments& arguments) {
    const double seconds = arguments.number("seconds");
    if (seconds < 0.0) throw ScriptError(QStringLiteral("time does not run backward"));
    session.time().advance(seconds);
    QCoreApplication::processEvents();
    return {};
}

double medianOf(const std::vector<double>& sorted) {
    const std::size_t half = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[half] : (sorted[half - 1] + sorted[half]) / 2.0;
}

QJsonValue summary(const QJsonObject& line, std::vector<double> milliseconds) {
    std::ranges::sort(milliseconds);
    return QJsonObject{{QStringLiteral("do"), line.value(QStringLiteral("do"))},
                       {QStringLiteral("minimum"), milliseconds.front()},
                       {QStringLiteral("median"), medianOf(milliseconds)},
                       {QStringLiteral("maximum"), milliseconds.back()}};
}

QJsonValue time(Session& session, const Arguments& arguments) {
    const QJsonArray script = arrayFrom(arguments.value("script"), QStringLiteral("script"));
    const int runs = arguments.integer("runs", 1);
    if (runs < 1) throw ScriptError(QStringLiteral("\"runs\" must be at least 1"));
    std::vector<std::vector<double>> milliseconds(static_cast<std::size_t>(script.size()));
    for (int run = 0; run < runs; ++run) {
        for (qsizetype i = 0; i < script.size(); ++i) {
            const QJsonObject line = objectFrom(script.at(i), QStringLiteral("script"));
            QElapsedTimer timer;
            timer.start();
            session.runLine(line);
            milliseconds[static_cast<std::size_t>(i)].push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    }
    QJsonArray results;
    for (qsizetype i = 0; i < script.size(); ++i)
        results.append(summary(script.at(i).toObject(), milliseconds[static_cast<std::size_t>(i)]));
    return results;
}

/// Whether the run ends; a prompt that was cancelled keeps it going.
QJsonValue quit(Session& session, const Arguments&) {
    const bool ends = session.store().shouldTerminateAfterHandlingUnsavedProjects();
    if (ends) {
        session.store().finishSession();
        session.end(SessionEnd::cleanly);
    }
    return ends;
}

QJsonValue kill(Session& session, const Arguments&) {
    session.end(SessionEnd::killed);
    return {};
}

constexpr Verb verbs[] = {
    {"wait", "seconds", wait},
    {"time", "script runs?", time},
    {"quit", "", quit},
    {"kill", "", kill},
};

} // namespace

VerbTable controlVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
