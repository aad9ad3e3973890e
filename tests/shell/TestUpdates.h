// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PackageInstaller.h"
#include "services/AppUpdateService.h"
#include "support/ScriptedHttpClient.h"

#include <memory>

namespace quillabrae::shell {

/// Updates with a scripted network and nobody who installs packages.
struct TestUpdates {
    class NoInstaller final : public platform::PackageInstaller {
    public:
        HandOver install(const QString&) override { return HandOver::noInstaller; }
    };

    tests::ScriptedHttpClient http;
    NoInstaller installer;

    /// Of version 1.0; an empty feed is that of a build without updates.
    std::unique_ptr<services::AppUpdateService> make(const QString& feed, const QString& folder,
                                                     platform::Preferences& preferences,
                                                     const platform::Clock& clock) {
        return std::make_unique<services::AppUpdateService>(
            services::UpdateSource::from(QUrl(feed),
                                         QString::fromLatin1(QByteArray(32, 'k').toBase64()),
                                         QStringLiteral("1.0")),
            services::AppUpdater::Environment{http, installer, folder,
                                              platform::makeDirectLatestWork},
            preferences, clock);
    }
};

} // namespace quillabrae::shell
