// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"
#include "platform/LatestWork.h"
#include "services/Appcast.h"
#include "services/ReleaseVersion.h"
#include "services/UpdateSignature.h"

#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

namespace quillabrae::platform {
class PackageInstaller;
} // namespace quillabrae::platform

namespace quillabrae::services {

/// Who is told how a check goes. The calls of one check come in this order, on the thread that
/// asked, and never from within `check`.
class AppUpdaterDelegate {
public:
    virtual ~AppUpdaterDelegate() = default;

    /// The feed's server has answered with a document.
    virtual void didLoadAppcast() = 0;
    virtual void didFindValidUpdate(const QString& displayVersionString) = 0;
    virtual void didNotFindUpdate() = 0;
    virtual void willInstallUpdate() = 0;
    /// `description` is a sentence for the user.
    virtual void didAbort(const QString& description) = 0;
    /// The last call of every check.
    virtual void willFinishUpdateSession() = 0;
};

/// Where updates come from.
struct UpdateSource {
    QUrl feed;
    UpdateKey key;
    /// What runs now; only what is newer counts.
    ReleaseVersion current;

    /// Nothing unless the feed is HTTPS, the key is one and the version is plain numbers.
    static std::optional<UpdateSource> from(const QUrl& feed, const QString& publicKey,
                                            const QString& version);
};

/// Looks for newer versions of the program and hands their packages to the system's installer.
///
/// A package is believed for its signature alone: it is written into a folder closed to everybody
/// else, and handed over when what the file holds there verifies.
class AppUpdater {
public:
    struct Environment {
        platform::HttpClient& http;
        platform::PackageInstaller& installer;
        /// Where a package is kept for the installer; nothing else is in there.
        QString folder;
        platform::LatestWorkFactory makeWork;
    };

    /// Everything referenced outlives this.
    AppUpdater(UpdateSource source, Environment environment, AppUpdaterDelegate& delegate);
    ~AppUpdater();

    enum class Goal { find, install };
    /// Reads the feed, and with `install` goes on to what it finds there. A reading that is under
    /// way serves the new goal.
    void check(Goal goal);

private:
    void takeFeed(const platform::HttpOutcome& outcome);
    void download(const AppcastItem& item);
    void takePackage(const platform::HttpOutcome& outcome, const AppcastItem& item);
    void handOver(const QString& path);
    void abort(const QString& description);

    UpdateSource m_source;
    Environment m_environment;
    AppUpdaterDelegate& m_delegate;
    Goal m_goal = Goal::find;
    std::unique_ptr<platform::HttpExchange> m_exchange;
    std::unique_ptr<platform::LatestWork> m_work;
};

} // namespace quillabrae::services
