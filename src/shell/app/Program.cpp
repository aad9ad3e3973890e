// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/Program.h"

#include "platform/AppPaths.h"
#include "platform/ApplicationIdentity.h"
#include "platform/ApplicationService.h"
#include "platform/CrashReporter.h"
#include "platform/ProgramInstance.h"
#include "platform/StartRequest.h"
#include "platform/Translations.h"
#include "shell/app/AppModel.h"
#include "shell/app/Deployment.h"

#include <QApplication>
#include <QDir>
#include <QLocale>

namespace quillabrae::shell {

using platform::ApplicationService;
using platform::AppPaths;
using platform::MeetingPlace;
using platform::ProgramInstance;
using platform::StartRequest;

namespace {

/// How long a start by the bus goes without a window for the call that it was started for. The call
/// waits on the bus already; without one somebody only passed the bus's environment on.
constexpr std::chrono::milliseconds callPatience{400};

/// What this start was asked for, by its arguments or by the call that the bus started it for.
StartRequest requestOfThisStart(ApplicationService& service, const QByteArray& activationToken) {
    StartRequest request = platform::sortedRequest(
        platform::urlsFromArguments(QCoreApplication::arguments().mid(1), QDir::currentPath()));
    request.activationToken = activationToken;
    const bool isForBus = ApplicationService::takeStartedByBus();
    if (!isForBus || request.asksForMore()) return request;
    return service.waitForCall(callPatience).value_or(request);
}

} // namespace

int runProgram(QApplication& application, const Deployment& deployment,
               const QByteArray& activationToken) {
    // A stroke goes through every place that the pointer was seen at, however long painting takes.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QCoreApplication::setAttribute(Qt::AA_CompressTabletEvents, false);
    QCoreApplication::setApplicationName(QStringLiteral("Quillabrae"));
    QCoreApplication::setApplicationVersion(deployment.version);
    QGuiApplication::setDesktopFileName(platform::applicationId);

    const AppPaths paths = AppPaths::standard();
    ApplicationService service;
    const StartRequest request = requestOfThisStart(service, activationToken);
    ProgramInstance instance(MeetingPlace::standard(paths.applicationSupport));
    switch (instance.start(request)) {
        case ProgramInstance::Role::first:
            break;
        case ProgramInstance::Role::second:
            return EXIT_SUCCESS;
        case ProgramInstance::Role::unanswered:
            qCritical("Quillabrae is running but did not answer.");
            return EXIT_FAILURE;
    }

    platform::reportCrashesTo(paths.crashFolder(), deployment.version.toUtf8());
    const platform::Translations translations(QLocale::system().uiLanguages());
    AppModel model(application, paths, deployment);
    model.launch(instance, service, request);
    return QCoreApplication::exec();
}

} // namespace quillabrae::shell
