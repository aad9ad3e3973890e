// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AppPaths.h"
#include "platform/ProgramInstance.h"
#include "platform/ProgramLink.h"
#include "shell/app/AppModel.h"
#include "shell/app/Deployment.h"

#include <QApplication>
#include <QDir>

using quillabrae::platform::AppPaths;
using quillabrae::platform::MeetingPlace;
using quillabrae::platform::ProgramInstance;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    // A stroke goes through every place that the pointer was seen at, however long painting takes.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QCoreApplication::setAttribute(Qt::AA_CompressTabletEvents, false);
    QCoreApplication::setApplicationName(QStringLiteral("Quillabrae"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLABRAE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quillabrae"));

    const AppPaths paths = AppPaths::standard();
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const QList<QUrl> files =
        quillabrae::platform::filesFromArguments(arguments, QDir::currentPath());
    // Only a program that runs can be waiting for a link.
    const QList<QUrl> links = quillabrae::platform::linksFromArguments(arguments);
    ProgramInstance instance(MeetingPlace::standard(paths.applicationSupport));
    switch (instance.start(files + links)) {
        case ProgramInstance::Role::first:
            break;
        case ProgramInstance::Role::second:
            return EXIT_SUCCESS;
        case ProgramInstance::Role::unanswered:
            qCritical("Quillabrae is running but did not answer.");
            return EXIT_FAILURE;
    }

    quillabrae::shell::AppModel model(application, paths,
                                      quillabrae::shell::Deployment::ofThisBuild());
    model.launch(instance, files);
    return QCoreApplication::exec();
}
