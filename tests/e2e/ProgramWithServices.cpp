// SPDX-License-Identifier: GPL-3.0-or-later
// The editor, with what it talks to taken from the environment in place of the build's settings:
// QUILLABRAE_TEST_ followed by the setting's name without QUILLABRAE_, and the version in
// QUILLABRAE_TEST_VERSION. QUILLABRAE_TEST_AUTHORITY is a PEM file of an authority to trust beside
// those of the system.
#include "shell/app/Deployment.h"
#include "shell/app/Program.h"

#include <QApplication>
#include <QSslCertificate>
#include <QSslConfiguration>

using quillabrae::shell::Deployment;

namespace {

QString setting(const char* name) {
    return qEnvironmentVariable(("QUILLABRAE_TEST_" + QByteArray(name)).constData());
}

Deployment deploymentOfTheTest() {
    const auto url = [](const char* name) { return QUrl(setting(name)); };
    return {
        .analyticsEndpoint = url("ANALYTICS_URL"),
        .analyticsWebsiteID = setting("ANALYTICS_WEBSITE_ID"),
        .analyticsHostName = setting("ANALYTICS_HOST_NAME"),
        .service = url("SERVICE_URL"),
        .updateFeed = url("UPDATE_FEED_URL"),
        .updatePublicKey = setting("UPDATE_PUBLIC_KEY"),
        .imageEdit = url("IMAGE_EDIT_URL"),
        .version = setting("VERSION"),
        .build = setting("BUILD"),
        .channel = setting("CHANNEL"),
    };
}

void trustAuthorityOfTheTest() {
    const QString file = setting("AUTHORITY");
    if (file.isEmpty()) return;
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(file);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    trustAuthorityOfTheTest();
    return quillabrae::shell::runProgram(application, deploymentOfTheTest());
}
