// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/Program.h"

#include "platform/AppPaths.h"
#include "platform/ProgramInstance.h"
#include "platform/ProgramLink.h"
#include "shell/app/AppModel.h"
#include "shell/app/Deployment.h"

#include <QApplication>
#include <QDir>

namespace quillabrae::shell {

using platform::AppPaths;
using platform::MeetingPlace;
using platform::ProgramInstance;

int runProgram(QApplication& application, const Deployment& deployment) {
    // A stroke goes through every place that the pointer was seen at, however long painting takes.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QCoreApplication::setAttribute(Qt::AA_CompressTabletEvents, false);
    QCoreApplication::setApplicationName(QStringLiteral("Quillabrae"));
    QCoreApplication::setApplicationVersion(deployment.version);
    QGuiApplication::setDesktopFileName(QStringLiteral("quillabrae"));

    const AppPaths paths = AppPaths::standard();
    const QList<QUrl> files =
        platform::filesFromArguments(QCoreApplication::arguments().mid(1), QDir::currentPath());
    ProgramInstance instance(MeetingPlace::standard(paths.applicationSupport));
    switch (instance.start(files)) {
        case ProgramInstance::Role::first:
            break;
        case ProgramInstance::Role::second:
            return EXIT_SUCCESS;
        case ProgramInstance::Role::unanswered:
            qCritical("Quillabrae is running but did not answer.");
            return EXIT_FAILURE;
    }

    AppModel model(application, paths, deployment);
    model.launch(instance, files);
    return QCoreApplication::exec();
}

} // namespace quillabrae::shell
