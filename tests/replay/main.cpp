// SPDX-License-Identifier: GPL-3.0-or-later
// quillabrae-replay: runs scripts of commands on the editor without a screen.
#include "platform/Translations.h"
#include "replay/Runner.h"
#include "replay/Session.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using namespace quillabrae;

struct CloseFile {
    void operator()(std::FILE* file) const {
        if (file != stdin) std::fclose(file);
    }
};

std::unique_ptr<std::FILE, CloseFile> openScript(const QString& name) {
    if (name == QLatin1StringView("-")) return std::unique_ptr<std::FILE, CloseFile>(stdin);
    return std::unique_ptr<std::FILE, CloseFile>(
        std::fopen(QFile::encodeName(name).constData(), "r"));
}

/// Ends the process as a crash would: nothing in it is cleaned up.
[[noreturn]] void endWithoutCleanup(replay::Session& session, int status) {
    session.discardTemporaryHome();
    if (session.ending() == replay::SessionEnd::killed) std::raise(SIGKILL);
    std::_Exit(status);
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const platform::Translations english({});
    QCommandLineParser options;
    options.setApplicationDescription(
        QStringLiteral("Runs scripts of editor commands, one JSON object a line."));
    options.addHelpOption();
    options.addOption({QStringLiteral("home"),
                       QStringLiteral("The home directory; a fresh temporary one without it."),
                       QStringLiteral("directory")});
    options.addOption({QStringLiteral("store"),
                       QStringLiteral("The program's own data folder, in place of the home's."),
                       QStringLiteral("directory")});
    options.addOption({QStringLiteral("strict"), QStringLiteral("Stop at the first failure.")});
    options.addPositionalArgument(QStringLiteral("script"),
                                  QStringLiteral("Files; - reads standard input."),
                                  QStringLiteral("SCRIPT..."));
    options.process(application);
    if (options.positionalArguments().isEmpty()) options.showHelp(2);

    replay::Session session(
        {options.value(QStringLiteral("home")), options.value(QStringLiteral("store"))});
    replay::Runner runner(session, options.isSet(QStringLiteral("strict"))
                                       ? replay::AfterFailure::stop
                                       : replay::AfterFailure::goOn);
    for (const QString& name : options.positionalArguments()) {
        const auto script = openScript(name);
        if (!script) {
            std::fprintf(stderr, "quillabrae-replay: cannot read %s\n", qPrintable(name));
            endWithoutCleanup(session, 2);
        }
        runner.run(script.get());
        if (runner.isOver()) break;
    }
    const int status = runner.hasFailed() ? 1 : 0;
    if (session.ending() == replay::SessionEnd::cleanly) return status;
    endWithoutCleanup(session, status);
}
