// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace quillabrae::shell {

/// Whom the program talks to and how it names itself there. What is empty is left alone: nothing is
/// sent.
struct Deployment {
    /// Where usage events go, and as what.
    QUrl analyticsEndpoint;
    QString analyticsWebsiteID;
    QString analyticsHostName;
    /// The host behind feedback and sign-in.
    QUrl service;
    /// The list of versions to update to, and the key that signs them: 32 bytes in base64.
    QUrl updateFeed;
    QString updatePublicKey;
    /// The host that generative fill sends pictures to.
    QUrl imageEdit;
    /// The version that users see.
    QString version;
    /// Tells builds of one version apart.
    QString build;
    /// "release" or "beta".
    QString channel;

    /// What this build was configured with.
    static Deployment ofThisBuild();
};

} // namespace quillabrae::shell
