// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/Runner.h"

#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdlib>

namespace quillabrae::replay {
namespace {

QJsonObject parsedLine(const QByteArray& text) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw ScriptError(
            QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset));
    if (!document.isObject()) throw ScriptError(QStringLiteral("a line must be one object"));
    return document.object();
}

QJsonValue runVerb(Session& session, const QJsonObject& line) {
    const QJsonValue name = line.value(QStringLiteral("do"));
    if (!name.isString()) throw ScriptError(QStringLiteral("the key \"do\" is missing"));
    const Verb* verb = findVerb(name.toString());
    if (!verb) throw ScriptError(QStringLiteral("no verb is called \"%1\"").arg(name.toString()));
    checkKeys(*verb, line);
    return verb->run(session, Arguments(line));
}

bool isExpectation(const QJsonObject& line) {
    return line.value(QStringLiteral("do")).toString().startsWith(QLatin1StringView("expect"));
}

void print(const QJsonObject& answer) {
    const QByteArray text = QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    // Who reads along has the line when its work is done, whatever happens to this process then.
    std::fflush(stdout);
}

QByteArray nextLine(std::FILE* file) {
    QByteArray line;
    for (int c = std::getc(file); c != EOF; c = std::getc(file)) {
        line.append(static_cast<char>(c));
        if (c == '\n') break;
    }
    return line;
}

} // namespace

Runner::Runner(Session& session, AfterFailure afterFailure)
    : m_session(session), m_afterFailure(afterFailure) {
    m_session.runLine = [this](const QJsonObject& line) { return runVerb(m_session, line); };
}

bool Runner::isOver() const {
    return m_session.ending() != SessionEnd::none ||
           (m_hasFailed && m_afterFailure == AfterFailure::stop);
}

void Runner::run(std::FILE* script) {
    int lineNumber = 0;
    while (!isOver()) {
        const QByteArray line = nextLine(script);
        if (line.isEmpty()) return;
        ++lineNumber;
        const QByteArray text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith('#')) runText(text, lineNumber);
    }
}

void Runner::runText(const QByteArray& text, int lineNumber) {
    QJsonObject answer{{QStringLiteral("line"), lineNumber}};
    try {
        const QJsonObject line = parsedLine(text);
        const QJsonValue result = runVerb(m_session, line);
        // What a command has put off to the next turn of the loop belongs to its line.
        QCoreApplication::processEvents();
        if (!isExpectation(line)) m_session.lastResult = result;
        answer.insert(QStringLiteral("ok"), true);
        answer.insert(QStringLiteral("result"), result);
    } catch (const ScriptError& error) {
        m_hasFailed = true;
        answer.insert(QStringLiteral("ok"), false);
        answer.insert(QStringLiteral("error"), error.message());
    }
    print(answer);
}

} // namespace quillabrae::replay
