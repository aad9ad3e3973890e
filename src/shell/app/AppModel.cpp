// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/AppModel.h"

#include "effects/OpenAIImageEditService.h"
#include "effects/OpenAIKeychainService.h"
#include "effects/PluginLibraryService.h"
#include "persistence/ImageLoader.h"
#include "persistence/SVGImportService.h"
#include "platform/ApplicationService.h"
#include "platform/ClipboardPasteboard.h"
#include "platform/Clock.h"
#include "platform/DesktopBrowser.h"
#include "platform/DesktopRegistration.h"
#include "platform/GioFileIcons.h"
#include "platform/KeychainSecretStore.h"
#include "platform/LastCrashReport.h"
#include "platform/NetworkHttpClient.h"
#include "platform/PackageInstaller.h"
#include "platform/ProgramInstance.h"
#include "platform/SecureRandom.h"
#include "platform/SettingsPreferences.h"
#include "platform/XdgRecentDocuments.h"
#include "services/AppAnalyticsService.h"
#include "services/AppUpdateService.h"
#include "services/BrowserAuthentication.h"
#include "services/FeedbackAttachmentService.h"
#include "services/FeedbackService.h"
#include "services/ProgramIdentity.h"
#include "services/QuillabraeAccountService.h"
#include "services/WebService.h"
#include "shell/app/AppDelegate.h"
#include "shell/app/Application.h"
#include "shell/app/CrashOffer.h"
#include "shell/app/Deployment.h"
#include "shell/app/DesktopRecents.h"
#include "shell/app/DesktopWindows.h"
#include "shell/app/WindowCoordinator.h"
#include "shell/dialogs/Alert.h"
#include "shell/dialogs/DesktopDialogs.h"
#include "shell/dialogs/DesktopProjectPanels.h"
#include "shell/dialogs/DesktopWorkRunner.h"
#include "shell/dialogs/SVGSizeDialogView.h"
#include "shell/looks/Symbols.h"
#include "shell/looks/SystemAppearance.h"
#include "shell/looks/SystemFontSize.h"
#include "shell/looks/SystemMotion.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QCoreApplication>
#include <QTimer>

namespace quillabrae::shell {

namespace {

services::ProgramIdentity identityOf(const Deployment& deployment) {
    return services::identityOfThisProgram(deployment.version, deployment.build,
                                           deployment.channel);
}

} // namespace

/// In the order of construction: each leans only on those before it.
struct AppModel::Graph {
    Graph(QApplication& application, const platform::AppPaths& paths, const Deployment& deployment)
        : imageEdit(http, deployment.imageEdit),
          preferences(paths.preferencesFile, platform::SettingsPreferences::Writing::gathered),
          analytics(services::AppAnalyticsConfiguration::from(deployment.analyticsEndpoint,
                                                              deployment.analyticsWebsiteID,
                                                              deployment.analyticsHostName),
                    preferences, identityOf(deployment)),
          appearance(preferences),
          panels([this] { return windows.dialogParent(); }),
          work([this] { return windows.dialogParent(); }),
          store({panels, preferences, clock, fileIcons, pasteboard, paths, work,
                 [this](const QByteArray& svg) { return importSvg(svg); },
                 platform::makeThreadedLatestWork, platform::takeFileLock,
                 store::GenerativeFillServices{keychain, imageEdit}, &analytics},
                store::Persistence::on),
          recentDocuments(platform::XdgRecentDocuments::standardFile(),
                          platform::XdgRecentDocuments::standardMissing()),
          recents(store, recentDocuments),
          authentication(browser),
          account({http, secrets, preferences, authentication, platform::secureRandomData},
                  services::WebService(deployment.service)),
          plugins(effects::PluginLibraryService::defaultInstallDirectory(paths)),
          feedback(http, services::WebService(deployment.service), identityOf(deployment)),
          feedbackAttachments(
              {.file =
                   [](const QString& path, const platform::WorkControl& control) {
                       return persistence::loadImageFile(path, control);
                   },
               .bytes =
                   [](const QByteArray& bytes, const platform::WorkControl& control) {
                       return persistence::loadImage(bytes, control);
                   }}),
          dialogs({feedback, feedbackAttachments,
                   [this](QWidget* parent) {
                       return panels.chooseImage(
                           QCoreApplication::translate("AppModel", "Attach Image"), parent);
                   },
                   [this] { return crashOffer.draft(); }, [this] { crashOffer.feedbackSent(); }}),
          updates(services::UpdateSource::from(deployment.updateFeed, deployment.updatePublicKey,
                                               deployment.version),
                  {http, installer, paths.applicationSupport + QStringLiteral("/Updates"),
                   platform::makeThreadedLatestWork},
                  preferences, clock),
          factory({store, preferences, keychain, [this](const QUrl& url) { browser.open(url); },
                   account},
                  motion, updates),
          windows({store, preferences, factory, dialogs, plugins}),
          crashes(paths.crashFolder()),
          crashOffer(crashes, {.ask =
                                   [this](const Alert& alert) {
                                       return runAlert(alert, windows.dialogParent());
                                   },
                               .showFeedback = [this] { windows.showFeedbackDialog(); }}),
          delegate(store, windows,
                   {.atFirstFrame = [this] { analytics.trackLaunch(); },
                    .afterFirstFrame =
                        [this] {
                            QGuiApplication::setWindowIcon(
                                Symbols::icon(QStringLiteral("quillabrae.project")));
                            registration.claimProjectType();
                            appearance.followSystem();
                            fontSize.followSystem();
                            motion.followSystem();
                            if (service != nullptr) service->start();
                            updates.start();
                            crashes.thinOut();
                            if (feedback.isConfigured())
                                QTimer::singleShot(0, &delegate, [this] { crashOffer.offer(); });
                        },
                    .quit = [] { QCoreApplication::exit(); },
                    .followLink = [this](const QUrl& link) { follow(link); }}) {
        application.installEventFilter(&delegate);
        // Queued, since the alert has an event loop of its own.
        QObject::connect(
            &updates, &services::AppUpdateService::endedWith, &delegate,
            [this](const QString& message, const QString& informativeText) {
                runAlert(
                    {message, informativeText, {QCoreApplication::translate("AppModel", "OK")}},
                    windows.dialogParent());
            },
            Qt::QueuedConnection);
    }

    /// A link that a sign-in waits for brings the user back to where it was begun.
    void follow(const QUrl& link) {
        if (authentication.takeLink(link)) windows.showSettings();
    }

    std::optional<model::PastedImage> importSvg(const QByteArray& svg) {
        return persistence::SVGImportService::pastedImage(
            svg,
            [this](QSizeF naturalSize) {
                return SVGSizeDialogView::ask(naturalSize, windows.dialogParent());
            },
            work);
    }

    platform::SystemClock clock;
    platform::GioFileIcons fileIcons;
    platform::ClipboardPasteboard pasteboard;
    platform::XdgDesktopRegistration registration;
    platform::KeychainSecretStore secrets;
    platform::NetworkHttpClient http;
    platform::DesktopBrowser browser;
    platform::XdgPackageInstaller installer;
    effects::OpenAIKeychainService keychain{secrets};
    effects::OpenAIImageEditService imageEdit;
    platform::SettingsPreferences preferences;
    services::AppAnalyticsService analytics;
    SystemAppearance appearance;
    SystemFontSize fontSize;
    SystemMotion motion;
    DesktopProjectPanels panels;
    DesktopWorkRunner work;
    store::ProjectStore store;
    platform::XdgRecentDocuments recentDocuments;
    DesktopRecents recents;
    services::BrowserAuthentication authentication;
    services::QuillabraeAccountService account;
    effects::PluginLibraryService plugins;
    services::FeedbackService feedback;
    services::FeedbackAttachmentService feedbackAttachments;
    DesktopDialogs dialogs;
    services::AppUpdateService updates;
    DesktopWindows factory;
    WindowCoordinator windows;
    platform::CrashFolder crashes;
    CrashOffer crashOffer;
    platform::ApplicationService* service = nullptr;
    AppDelegate delegate;
};

AppModel::AppModel(QApplication& application, const platform::AppPaths& paths,
                   const Deployment& deployment)
    : m_graph(std::make_unique<Graph>(application, paths, deployment)) {
    QApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &m_graph->delegate,
                     &AppDelegate::commitData, Qt::DirectConnection);
    if (const auto* own = qobject_cast<Application*>(&application))
        QObject::connect(
            own, &Application::memoryRefused, &m_graph->store, [&store = m_graph->store] {
                store.setStatusMessage(store::ProjectStore::tr("There is not enough memory"));
            });
}

AppModel::~AppModel() = default;

void AppModel::launch(platform::ProgramInstance& instance, platform::ApplicationService& service,
                      const platform::StartRequest& request) {
    QObject::connect(&instance, &platform::ProgramInstance::asked, &m_graph->delegate,
                     &AppDelegate::answer);
    QObject::connect(&service, &platform::ApplicationService::asked, &m_graph->delegate,
                     &AppDelegate::answer);
    m_graph->service = &service;
    m_graph->delegate.finishLaunching(request);
}

} // namespace quillabrae::shell
