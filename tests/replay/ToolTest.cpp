// SPDX-License-Identifier: GPL-3.0-or-later
// The program itself: what it says of lines it does not understand, and how it ends.
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace quillabrae::replay {
namespace {

struct Outcome {
    int status = 0;
    bool wasKilled = false;
    QList<QJsonObject> answers;

    QString error(qsizetype index) const {
        return answers.at(index).value(QStringLiteral("error")).toString();
    }
    bool isOk(qsizetype index) const {
        return answers.at(index).value(QStringLiteral("ok")).toBool();
    }
};

Outcome runScript(const QByteArray& script, const QStringList& options = {}) {
    QProcess process;
    process.start(QStringLiteral(QUILLABRAE_REPLAY), options + QStringList{QStringLiteral("-")});
    process.write(script);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
    Outcome run{process.exitCode(), process.exitStatus() == QProcess::CrashExit, {}};
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty()) run.answers << QJsonDocument::fromJson(line).object();
    }
    return run;
}

TEST(Replay, EachLineIsAnsweredWithItsNumberInTheScript) {
    const Outcome run =
        runScript("# a comment\n\n{\"do\": \"state\", \"of\": \"statusMessage\"}\n");
    ASSERT_EQ(run.answers.size(), 1);
    EXPECT_EQ(run.answers.first(),
              (QJsonObject{{QStringLiteral("line"), 3},
                           {QStringLiteral("ok"), true},
                           {QStringLiteral("result"), QStringLiteral("Ready")}}));
    EXPECT_EQ(run.status, 0);
}

TEST(Replay, WhatIsNotUnderstoodIsNamedAndTheScriptGoesOn) {
    const Outcome run = runScript(R"(nonsense
{"do": "paint"}
{"no": "verb"}
{"do": "store.undo"}
{"do": "store.undo", "projectID": "active", "times": 2}
{"do": "store.createUntitledProject", "width": "8", "height": 8, "resolutionDPI": 96}
{"do": "set", "brushSise": 3}
{"do": "set", "selectedTool": "paintbrush"}
{"do": "state", "of": "projects.0.title"}
{"do": "answer", "prompt": "overwrite", "with": "yes"}
{"do": "expect", "that": "zoomScale", "is": 2}
{"do": "expect", "that": "zoomScale", "is": 1}
)");
    ASSERT_EQ(run.answers.size(), 12);
    for (int i = 0; i < 11; ++i) {
        EXPECT_FALSE(run.isOk(i)) << i;
        EXPECT_FALSE(run.error(i).isEmpty()) << i;
    }
    EXPECT_TRUE(run.isOk(11));
    EXPECT_EQ(run.error(1), QStringLiteral("no verb is called \"paint\""));
    EXPECT_EQ(run.error(3), QStringLiteral("store.undo needs the key \"projectID\""));
    EXPECT_EQ(run.error(4), QStringLiteral("store.undo has no key \"times\""));
    EXPECT_EQ(run.error(5), QStringLiteral("\"width\" must be a number"));
    EXPECT_EQ(run.error(6), QStringLiteral("no setting is called \"brushSise\""));
    EXPECT_EQ(run.error(10), QStringLiteral("zoomScale is 1, not 2"));
    EXPECT_EQ(run.status, 1);
}

TEST(Replay, AStrictRunStopsAtTheFirstFailure) {
    const Outcome run =
        runScript("{\"do\": \"paint\"}\n{\"do\": \"prompts\"}\n", {QStringLiteral("--strict")});
    EXPECT_EQ(run.answers.size(), 1);
    EXPECT_EQ(run.status, 1);
}

TEST(Replay, AKilledRunLeavesItsHomeToTheNext) {
    const QTemporaryDir home;
    const QStringList options = {QStringLiteral("--home"), home.path()};
    const QByteArray create =
        R"({"do": "store.createUntitledProject", "width": 4, "height": 4, "resolutionDPI": 96})"
        "\n";
    const Outcome killed =
        runScript(create + "{\"do\": \"kill\"}\n{\"do\": \"prompts\"}\n", options);
    EXPECT_TRUE(killed.wasKilled);
    EXPECT_EQ(killed.answers.size(), 2);
    EXPECT_TRUE(
        runScript("{\"do\": \"expect\", \"that\": \"projects.count\", \"is\": 1}\n", options)
            .isOk(0));
    const Outcome quit = runScript(
        "{\"do\": \"answer\", \"prompt\": \"saveBeforeClosing\", \"with\": \"discard\"}\n"
        "{\"do\": \"quit\"}\n",
        options);
    EXPECT_EQ(quit.status, 0);
    EXPECT_FALSE(quit.wasKilled);
    EXPECT_TRUE(
        runScript("{\"do\": \"expect\", \"that\": \"projects.count\", \"is\": 0}\n", options)
            .isOk(0));
}

TEST(Replay, ARunWithoutAHomeLeavesNothingBehind) {
    const QTemporaryDir temporary;
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    const QByteArray create =
        R"({"do": "store.createUntitledProject", "width": 4, "height": 4, "resolutionDPI": 96})"
        "\n";
    runScript(create);
    runScript(create + "{\"do\": \"kill\"}\n");
    qunsetenv("TMPDIR");
    EXPECT_TRUE(QDir(temporary.path())
                    .entryList({QStringLiteral("quillabrae*")}, QDir::AllEntries)
                    .isEmpty());
}

TEST(Replay, TheStoreFolderCanBeElsewhere) {
    const QTemporaryDir folder;
    runScript(
        R"({"do": "store.createUntitledProject", "width": 4, "height": 4, "resolutionDPI": 96})"
        "\n",
        {QStringLiteral("--store"), folder.filePath(QStringLiteral("data"))});
    EXPECT_TRUE(
        QFile::exists(folder.filePath(QStringLiteral("data/Autosave/Recovery.quillabraesession"))));
}

TEST(Replay, PromptsShowTheTextsThatTheUserSees) {
    const Outcome run = runScript(
        R"({"do": "store.createUntitledProject", "width": 4, "height": 4, "resolutionDPI": 96}
{"do": "project", "title": "Boat"}
{"do": "store.recordHistory", "projectID": "active", "title": "Rename", "symbolName": "pencil"}
{"do": "store.closeActiveProjectRequestingSave"}
{"do": "prompts"}
)");
    const QJsonObject shown =
        run.answers.last().value(QStringLiteral("result")).toArray().first().toObject();
    EXPECT_EQ(shown.value(QStringLiteral("kind")), QStringLiteral("saveBeforeClosing"));
    EXPECT_EQ(shown.value(QStringLiteral("message")),
              QStringLiteral("Save changes to \"Boat\" before closing?"));
    EXPECT_EQ(shown.value(QStringLiteral("buttons")).toArray().size(), 3);
}

} // namespace
} // namespace quillabrae::replay
