// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/Deployment.h"

namespace quillabrae::shell {

Deployment Deployment::ofThisBuild() {
    return {
        .analyticsEndpoint = QUrl(QStringLiteral(QUILLABRAE_ANALYTICS_URL)),
        .analyticsWebsiteID = QStringLiteral(QUILLABRAE_ANALYTICS_WEBSITE_ID),
        .analyticsHostName = QStringLiteral(QUILLABRAE_ANALYTICS_HOST_NAME),
        .service = QUrl(QStringLiteral(QUILLABRAE_SERVICE_URL)),
        .updateFeed = QUrl(QStringLiteral(QUILLABRAE_UPDATE_FEED_URL)),
        .updatePublicKey = QStringLiteral(QUILLABRAE_UPDATE_PUBLIC_KEY),
        .imageEdit = QUrl(QStringLiteral(QUILLABRAE_IMAGE_EDIT_URL)),
        .version = QStringLiteral(QUILLABRAE_VERSION),
        .build = QStringLiteral(QUILLABRAE_BUILD),
        .channel = QStringLiteral(QUILLABRAE_CHANNEL),
    };
}

} // namespace quillabrae::shell
