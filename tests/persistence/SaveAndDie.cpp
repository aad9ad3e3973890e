// SPDX-License-Identifier: GPL-3.0-or-later
// Saves a small project titled "new" and kills itself at a step of that: PACKAGE STEP EXCHANGE,
// where EXCHANGE is "exchange" or "steps". Ends with success when there are fewer steps.
#include "persistence/FaultyFileOperations.h"
#include "persistence/ProjectFileService.h"
#include "persistence/SampleProjects.h"
#include "platform/FileIcons.h"

#include <QGuiApplication>

#include <csignal>

using namespace quillabrae;
using persistence::FaultyFileOperations;

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4) return 2;
    const int lastStep = arguments[2].toInt();

    model::PaintProject project = persistence::samples::twoLayers();
    project.title = QStringLiteral("new");
    FaultyFileOperations operations(arguments[3] == QLatin1StringView("exchange")
                                        ? FaultyFileOperations::Exchange::works
                                        : FaultyFileOperations::Exchange::isUnsupported);
    operations.beforeStep = [&](int step, const char*) {
        if (step == lastStep) std::raise(SIGKILL);
    };
    platform::NoFileIcons icons;
    persistence::ProjectFileService::save(project, QUrl::fromLocalFile(arguments[1]),
                                          persistence::samples::StoppedClock(), icons, operations);
    return 0;
}
