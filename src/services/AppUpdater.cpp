// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppUpdater.h"

#include "platform/FileOperations.h"
#include "platform/MappedFile.h"
#include "platform/PackageInstaller.h"
#include "platform/PrivateFile.h"

#include <QCoreApplication>

#include <chrono>
#include <utility>
#include <variant>

namespace quillabrae::services {
namespace {

/// The context of this file's texts, for translators.
struct AppUpdaterTexts {
    Q_DECLARE_TR_FUNCTIONS(AppUpdaterTexts)
};

constexpr int ok = 200;
constexpr std::chrono::seconds feedTimeout{30};
constexpr std::chrono::seconds packageTimeout{60};

platform::HttpRequest get(const QUrl& url, std::chrono::seconds timeout, qint64 maximumBytes) {
    // Bytes are counted, so they come as they are.
    return {url, "GET", {{"Accept-Encoding", "identity"}}, {}, timeout, maximumBytes};
}

/// The body of a plain answer, or why there is none.
std::variant<QByteArray, QString> bodyOf(const platform::HttpOutcome& outcome) {
    if (const auto* failure = std::get_if<platform::HttpFailure>(&outcome))
        return failure->description;
    const auto& reply = std::get<platform::HttpReply>(outcome);
    if (reply.status == ok) return reply.body;
    return AppUpdaterTexts::tr("The server answered with HTTP %1.").arg(reply.status);
}

struct StoredPackage {
    QString path;
    /// Why there is none; empty for a package that can be believed.
    QString fault;
};

StoredPackage stored(const QString& folder, const QByteArray& bytes, const UpdateKey& key,
                     const AppcastItem& item) {
    try {
        const QString path =
            platform::writePrivateFile(folder, QStringLiteral("quillabrae-update.deb"), bytes);
        const auto file = platform::MappedFile::open(path);
        if (file && key.verifies(file->text(), item.signature)) return {path, {}};
        platform::systemFileOperations().removeTree(folder);
        return {{}, AppUpdaterTexts::tr("The update is not signed as it should be.")};
    } catch (const platform::FileOperationError& error) {
        return {{},
                AppUpdaterTexts::tr("The update could not be stored: %1").arg(error.description())};
    }
}

} // namespace

std::optional<UpdateSource> UpdateSource::from(const QUrl& feed, const QString& publicKey,
                                               const QString& version) {
    const bool isSecure =
        feed.isValid() && feed.scheme() == QStringLiteral("https") && !feed.host().isEmpty();
    const auto key = UpdateKey::fromBase64(publicKey);
    const auto current = ReleaseVersion::from(version);
    if (!isSecure || !key || !current) return std::nullopt;
    return UpdateSource{feed, *key, *current};
}

AppUpdater::AppUpdater(UpdateSource source, Environment environment, AppUpdaterDelegate& delegate)
    : m_source(std::move(source)), m_environment(std::move(environment)), m_delegate(delegate) {}

AppUpdater::~AppUpdater() = default;

void AppUpdater::check(Goal goal) {
    m_goal = goal;
    if (m_exchange) return;
    m_exchange = m_environment.http.send(
        get(m_source.feed, feedTimeout, maximumFeedBytes), {},
        [this](const platform::HttpOutcome& outcome) { takeFeed(outcome); });
}

void AppUpdater::takeFeed(const platform::HttpOutcome& outcome) {
    const auto ended = std::move(m_exchange);
    const auto body = bodyOf(outcome);
    if (const auto* fault = std::get_if<QString>(&body)) return abort(*fault);
    m_delegate.didLoadAppcast();
    const auto items = readAppcast(std::get<QByteArray>(body));
    if (!items) return abort(AppUpdaterTexts::tr("The list of versions could not be read."));
    const auto update = newestUpdate(*items, m_source.current);
    if (!update) {
        m_delegate.didNotFindUpdate();
        m_delegate.willFinishUpdateSession();
        return;
    }
    m_delegate.didFindValidUpdate(update->displayVersionString);
    if (m_goal == Goal::install)
        download(*update);
    else
        m_delegate.willFinishUpdateSession();
}

void AppUpdater::download(const AppcastItem& item) {
    m_delegate.willInstallUpdate();
    m_exchange = m_environment.http.send(
        get(item.url, packageTimeout, item.length), {},
        [this, item](const platform::HttpOutcome& outcome) { takePackage(outcome, item); });
}

void AppUpdater::takePackage(const platform::HttpOutcome& outcome, const AppcastItem& item) {
    const auto ended = std::move(m_exchange);
    auto body = bodyOf(outcome);
    if (const auto* fault = std::get_if<QString>(&body)) return abort(*fault);
    QByteArray bytes = std::move(std::get<QByteArray>(body));
    if (bytes.size() != item.length)
        return abort(AppUpdaterTexts::tr("The update did not arrive whole."));
    if (!m_work) m_work = m_environment.makeWork();
    m_work->run(
        [this, item, bytes = std::move(bytes), folder = m_environment.folder, key = m_source.key] {
            return [this, package = stored(folder, bytes, key, item)] {
                if (package.fault.isEmpty())
                    handOver(package.path);
                else
                    abort(package.fault);
            };
        });
}

void AppUpdater::handOver(const QString& path) {
    using HandOver = platform::PackageInstaller::HandOver;
    if (m_environment.installer.install(path) == HandOver::noInstaller)
        return abort(
            AppUpdaterTexts::tr("There is no program here to install packages with. The update "
                                "is in %1.")
                .arg(path));
    m_delegate.willFinishUpdateSession();
}

void AppUpdater::abort(const QString& description) {
    m_delegate.didAbort(description);
    m_delegate.willFinishUpdateSession();
}

} // namespace quillabrae::services
