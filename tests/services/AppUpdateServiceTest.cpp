// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Clock.h"
#include "platform/MemoryPreferences.h"
#include "platform/NetworkHttpClient.h"
#include "platform/PackageInstaller.h"
#include "services/AppUpdateService.h"
#include "support/LoopbackServer.h"
#include "support/UpdateSigner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillabrae::services {
namespace {

using tests::CertificateAuthority;
using tests::LoopbackServer;
using tests::TrustedAuthority;
using tests::UpdateSigner;
using Kind = AppUpdateState::Kind;

const QString lastCheckKey = QStringLiteral("Quillabrae.updates.lastCheck");

class SetClock final : public platform::Clock {
public:
    QDateTime now() const override { return time; }
    QDateTime time = QDateTime::currentDateTimeUtc();
};

/// Looks at what it is handed.
class WatchingInstaller final : public platform::PackageInstaller {
public:
    HandOver install(const QString& path) override {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        packages.push_back(file.readAll());
        struct stat information {};
        EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &information), 0);
        EXPECT_EQ(information.st_mode, static_cast<mode_t>(S_IFREG | 0600));
        EXPECT_EQ(::lstat(QFile::encodeName(QFileInfo(path).path()).constData(), &information), 0);
        EXPECT_EQ(information.st_mode, static_cast<mode_t>(S_IFDIR | 0700));
        EXPECT_TRUE(path.endsWith(QStringLiteral(".deb")));
        return answer;
    }
    std::vector<QByteArray> packages;
    HandOver answer = HandOver::done;
};

/// Version 1.2 of the program, and a server whose feed offers what a test puts into it.
class AppUpdateServiceTest : public testing::Test {
protected:
    AppUpdateServiceTest() {
        server = std::make_unique<LoopbackServer>(
            [this](const LoopbackServer::Request& request, QTcpSocket& socket) {
                answer(request, socket);
            },
            authority.issue());
        offer(QStringLiteral("1.3"));
    }
    ~AppUpdateServiceTest() override { service.reset(); }

    void answer(const LoopbackServer::Request& request, QTcpSocket& socket) {
        const auto known = answers.find(request.target);
        if (known != answers.end())
            known->second(request, socket);
        else
            LoopbackServer::respond(404, "nothing here")(request, socket);
    }
    QByteArray item(const QString& version, qsizetype length, const QByteArray& signature) const {
        return "<item><enclosure url=\"" + server->url().toEncoded() + "/q.deb\" length=\"" +
               QByteArray::number(length) + "\" edSignature=\"" + signature.toBase64() +
               "\" version=\"" + version.toLatin1() + "\" shortVersionString=\"" +
               version.toLatin1() + " Gull\"/></item>";
    }
    void setFeed(const QByteArray& items) {
        answers["/feed"] =
            LoopbackServer::respond(200, "<rss><channel>" + items + "</channel></rss>");
    }
    /// The feed names the package as it is, under a version.
    void offer(const QString& version) {
        setFeed(item(version, package.size(), signer.signature(package)));
        answers["/q.deb"] = LoopbackServer::respond(200, package);
    }
    std::optional<UpdateSource> source() const {
        return UpdateSource::from(server->url().resolved(QUrl(QStringLiteral("/feed"))),
                                  signer.publicKeyBase64(), QStringLiteral("1.2"));
    }
    void makeService(platform::LatestWorkFactory makeWork = platform::makeDirectLatestWork) {
        makeService(source(), std::move(makeWork));
    }
    void makeService(const std::optional<UpdateSource>& from,
                     platform::LatestWorkFactory makeWork = platform::makeDirectLatestWork) {
        states.clear();
        told.clear();
        service = std::make_unique<AppUpdateService>(
            from, AppUpdater::Environment{http, installer, updates, std::move(makeWork)},
            preferences, clock);
        QObject::connect(service.get(), &AppUpdateService::stateChanged, service.get(),
                         [this] { states.push_back(service->state()); });
        QObject::connect(service.get(), &AppUpdateService::endedWith, service.get(),
                         [this](const QString& message, const QString& text) {
                             told << message + QLatin1Char('|') + text;
                         });
    }
    void waitUntilIdle() {
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return !service->state().isActionDisabled(); }, 10'000));
    }
    /// Presses the button and waits for what comes of it.
    void press() {
        service->checkForUpdates();
        EXPECT_EQ(service->state(), AppUpdateState::checking());
        waitUntilIdle();
    }
    /// Finds the offered update and goes for it.
    void install() {
        press();
        ASSERT_EQ(service->state().kind, Kind::available);
        press();
    }
    void expectRefused(const QString& reason) {
        install();
        EXPECT_TRUE(installer.packages.empty());
        EXPECT_EQ(service->state(), AppUpdateState::idle());
        ASSERT_EQ(told.size(), 1);
        EXPECT_EQ(told.back(), QStringLiteral("Quillabrae could not be updated.|") + reason);
        EXPECT_FALSE(QFileInfo::exists(updates));
    }

    CertificateAuthority authority;
    TrustedAuthority trusted{authority};
    UpdateSigner signer;
    QByteArray package = QByteArray(300'000, 'p') + "end";
    std::map<QByteArray, LoopbackServer::Answer> answers;
    std::unique_ptr<LoopbackServer> server;
    QTemporaryDir home;
    QString updates = home.filePath(QStringLiteral("Quillabrae/Updates"));
    platform::NetworkHttpClient http;
    WatchingInstaller installer;
    platform::MemoryPreferences preferences;
    SetClock clock;
    std::unique_ptr<AppUpdateService> service;
    std::vector<AppUpdateState> states;
    QStringList told;
};

TEST(AppUpdateState, HasItsWordsForTheButton) {
    const QString look = QStringLiteral("Check whether a newer version of Quillabrae is available");
    struct Row {
        AppUpdateState state;
        QString title;
        QString help;
        bool isDisabled;
    };
    const std::vector<Row> rows{
        {AppUpdateState::idle(), QStringLiteral("Check for Updates"), look, false},
        {AppUpdateState::checking(), QStringLiteral("Checking…"), look, true},
        {AppUpdateState::available(QStringLiteral("1.3")), QStringLiteral("Update Now"),
         QStringLiteral("Install Quillabrae 1.3"), false},
        {AppUpdateState::installing(), QStringLiteral("Installing…"), look, true},
        {AppUpdateState::failed(QStringLiteral("why")), QStringLiteral("Check for Updates"), look,
         false}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.state.buttonTitle(), row.title);
        EXPECT_EQ(row.state.helpText(), row.help);
        EXPECT_EQ(row.state.isActionDisabled(), row.isDisabled);
    }
}

TEST(UpdateSource, NeedsHttpsAKeyAndAVersion) {
    const QString key = UpdateSigner().publicKeyBase64();
    const auto isUsable = [&](const char* feed, const QString& with, const char* version) {
        return UpdateSource::from(QUrl(QString::fromLatin1(feed)), with,
                                  QString::fromLatin1(version))
            .has_value();
    };
    EXPECT_TRUE(isUsable("https://example.org/feed.xml", key, "1.2"));
    EXPECT_FALSE(isUsable("", key, "1.2"));
    EXPECT_FALSE(isUsable("http://example.org/feed.xml", key, "1.2"));
    EXPECT_FALSE(isUsable("file:///feed.xml", key, "1.2"));
    EXPECT_FALSE(isUsable("https://example.org/feed.xml", {}, "1.2"));
    EXPECT_FALSE(isUsable("https://example.org/feed.xml", key.left(20), "1.2"));
    EXPECT_FALSE(isUsable("https://example.org/feed.xml", key, "unknown"));
}

TEST_F(AppUpdateServiceTest, WithoutASourceNothingHappens) {
    makeService(std::nullopt);
    EXPECT_FALSE(service->hasSource());
    service->start();
    service->checkForUpdates();
    QTest::qWait(50);
    EXPECT_EQ(service->state(), AppUpdateState::idle());
    EXPECT_EQ(server->connectionCount(), 0);
}

TEST_F(AppUpdateServiceTest, ANewerVersionIsFoundAndThenInstalled) {
    makeService(platform::makeThreadedLatestWork);
    EXPECT_TRUE(service->hasSource());
    press();
    const AppUpdateState found = AppUpdateState::available(QStringLiteral("1.3 Gull"));
    EXPECT_EQ(states, (std::vector{AppUpdateState::checking(), found}));
    EXPECT_TRUE(installer.packages.empty());
    EXPECT_EQ(server->requests().size(), 1U);

    states.clear();
    press();
    EXPECT_EQ(states, (std::vector{AppUpdateState::checking(), found, AppUpdateState::installing(),
                                   AppUpdateState::idle()}));
    EXPECT_EQ(installer.packages, std::vector{package});
    EXPECT_TRUE(told.isEmpty());
    for (LoopbackServer::Request request : server->requests()) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.headers["accept-encoding"], "identity");
    }
}

TEST_F(AppUpdateServiceTest, AnInstallTakesTheNewestThereIsByThen) {
    makeService();
    press();
    package = "a newer one";
    offer(QStringLiteral("1.4"));
    press();
    EXPECT_EQ(installer.packages, std::vector<QByteArray>{"a newer one"});
}

TEST_F(AppUpdateServiceTest, AnUpdateThatIsWithdrawnIsNotInstalled) {
    makeService();
    press();
    setFeed({});
    press();
    EXPECT_TRUE(installer.packages.empty());
    EXPECT_EQ(service->state(), AppUpdateState::idle());
}

TEST_F(AppUpdateServiceTest, NothingNewerLeavesTheButtonAsItWas) {
    for (const char* version : {"1.2", "1.2.0", "1.1.9", "0.9"}) {
        offer(QString::fromLatin1(version));
        makeService();
        press();
        EXPECT_EQ(states, (std::vector{AppUpdateState::checking(), AppUpdateState::idle()}));
        EXPECT_EQ(told.size(), 1);
        EXPECT_TRUE(told.front().startsWith(QStringLiteral("You have the newest version.")));
    }
}

TEST_F(AppUpdateServiceTest, OfSeveralItemsTheNewestIsInstalled) {
    const QByteArray other = "not this one";
    setFeed(item(QStringLiteral("1.3"), other.size(), signer.signature(other)) +
            item(QStringLiteral("1.10"), package.size(), signer.signature(package)) +
            item(QStringLiteral("1.9"), other.size(), signer.signature(other)));
    makeService();
    install();
    EXPECT_EQ(installer.packages, std::vector{package});
}

TEST_F(AppUpdateServiceTest, TheButtonDoesNothingWhileACheckRuns) {
    answers["/feed"] = [](const auto&, QTcpSocket&) {};
    makeService();
    service->checkForUpdates();
    ASSERT_TRUE(QTest::qWaitFor([this] { return server->requests().size() == 1; }));
    EXPECT_TRUE(service->state().isActionDisabled());
    service->checkForUpdates();
    QTest::qWait(100);
    EXPECT_EQ(server->requests().size(), 1U);
    EXPECT_EQ(service->state(), AppUpdateState::checking());
}

TEST_F(AppUpdateServiceTest, APackageSignedByAnotherIsRefused) {
    makeService();
    setFeed(item(QStringLiteral("1.3"), package.size(), UpdateSigner().signature(package)));
    expectRefused(QStringLiteral("The update is not signed as it should be."));
}

TEST_F(AppUpdateServiceTest, APackageOfOtherBytesIsRefused) {
    makeService();
    QByteArray other = package;
    other[1000] = 'q';
    answers["/q.deb"] = LoopbackServer::respond(200, other);
    expectRefused(QStringLiteral("The update is not signed as it should be."));
}

TEST_F(AppUpdateServiceTest, ATruncatedPackageIsRefused) {
    makeService();
    answers["/q.deb"] = LoopbackServer::respond(200, package.left(1000));
    expectRefused(QStringLiteral("The update did not arrive whole."));
}

TEST_F(AppUpdateServiceTest, AConnectionThatBreaksOffIsAFailure) {
    makeService();
    answers["/q.deb"] = [](const auto&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 300003\r\n\r\nonly this");
        socket.disconnectFromHost();
    };
    install();
    EXPECT_TRUE(installer.packages.empty());
    EXPECT_EQ(service->state(), AppUpdateState::idle());
    EXPECT_EQ(told.size(), 1);
}

TEST_F(AppUpdateServiceTest, APackageLongerThanAnnouncedIsRefused) {
    makeService();
    answers["/q.deb"] = LoopbackServer::respond(200, package + package);
    expectRefused(QStringLiteral("The server's answer is too large."));
}

TEST_F(AppUpdateServiceTest, ARedirectIsNotFollowed) {
    const LoopbackServer elsewhere(LoopbackServer::respond(200, package), authority.issue());
    const auto moved =
        LoopbackServer::respond(302, "", "Location: " + elsewhere.url().toEncoded() + "/q.deb\r\n");
    makeService();
    answers["/q.deb"] = moved;
    expectRefused(QStringLiteral("The server answered with HTTP 302."));
    answers["/feed"] = moved;
    makeService();
    press();
    EXPECT_EQ(service->state(), AppUpdateState::idle());
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_F(AppUpdateServiceTest, AFeedThatCannotBeReadIsAFailure) {
    const std::vector<LoopbackServer::Answer> unreadable{
        LoopbackServer::respond(404, "gone"), LoopbackServer::respond(200, "no feed"),
        LoopbackServer::respond(200, QByteArray(maximumFeedBytes + 1, ' ')),
        LoopbackServer::respond(200, "<!DOCTYPE rss [<!ENTITY a \"b\">]><rss>&a;</rss>"),
        [](const auto&, QTcpSocket& socket) { socket.abort(); }};
    for (const auto& answer : unreadable) {
        answers["/feed"] = answer;
        makeService();
        press();
        EXPECT_EQ(states, (std::vector{AppUpdateState::checking(), AppUpdateState::idle()}));
        ASSERT_EQ(told.size(), 1);
        EXPECT_TRUE(told.front().startsWith(QStringLiteral("Quillabrae could not be updated.|")));
    }
}

TEST_F(AppUpdateServiceTest, AServerThatNobodyVouchesForIsNotBelieved) {
    const CertificateAuthority stranger;
    LoopbackServer other(LoopbackServer::respond(200, ""), stranger.issue());
    makeService(UpdateSource::from(other.url(), signer.publicKeyBase64(), QStringLiteral("1.2")));
    press();
    EXPECT_TRUE(other.requests().empty());
    EXPECT_EQ(service->state(), AppUpdateState::idle());
}

TEST_F(AppUpdateServiceTest, WithoutAnInstallerTheUserIsToldWhereThePackageIs) {
    makeService();
    installer.answer = platform::PackageInstaller::HandOver::noInstaller;
    install();
    EXPECT_EQ(service->state(), AppUpdateState::idle());
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.front().contains(updates));
}

TEST_F(AppUpdateServiceTest, TheStartLooksInSilenceOnceADay) {
    using namespace std::chrono_literals;
    makeService();
    service->start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return service->state().kind == Kind::available; }));
    EXPECT_EQ(states.size(), 1U);
    EXPECT_TRUE(preferences.value(lastCheckKey).isValid());

    const auto checksOf = [this](std::chrono::seconds later) {
        clock.time = clock.time.addDuration(later);
        const std::size_t before = server->requests().size();
        makeService();
        service->start();
        QTest::qWait(150);
        return server->requests().size() - before;
    };
    EXPECT_EQ(checksOf(23h), 0U);
    EXPECT_EQ(checksOf(2h), 1U);
    // A clock that was wrong does not silence it for years.
    EXPECT_EQ(checksOf(-1000h), 1U);
    preferences.setValue(lastCheckKey, QStringLiteral("nonsense"));
    EXPECT_EQ(checksOf(0h), 1U);
}

TEST_F(AppUpdateServiceTest, AStartThatReachesNobodySaysNothingAndDoesNotCount) {
    answers["/feed"] = LoopbackServer::respond(503, "");
    makeService();
    service->start();
    QTest::qWait(200);
    EXPECT_EQ(server->requests().size(), 1U);
    EXPECT_TRUE(states.empty());
    EXPECT_TRUE(told.isEmpty());
    EXPECT_FALSE(preferences.value(lastCheckKey).isValid());
}

TEST_F(AppUpdateServiceTest, AStartWithNothingNewerSaysNothing) {
    setFeed({});
    makeService();
    service->start();
    QTest::qWait(200);
    EXPECT_TRUE(states.empty());
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(AppUpdateServiceTest, APressDuringTheLookOfTheStartIsAnswered) {
    makeService();
    service->start();
    press();
    QTest::qWait(100);
    EXPECT_EQ(service->state().kind, Kind::available);
    EXPECT_EQ(states.size(), 2U);
    EXPECT_EQ(server->requests().size(), 1U);
}

TEST_F(AppUpdateServiceTest, AnOldPackageIsRemovedAndTodaysIsLeftAlone) {
    makeService();
    install();
    ASSERT_TRUE(QFileInfo::exists(updates));
    clock.time = QDateTime::currentDateTimeUtc().addSecs(1);
    service->start();
    EXPECT_TRUE(QFileInfo::exists(updates));
    clock.time = clock.time.addDays(2);
    service->start();
    EXPECT_FALSE(QFileInfo::exists(updates));
}

TEST_F(AppUpdateServiceTest, AnEndInTheMiddleIsFine) {
    makeService(platform::makeThreadedLatestWork);
    press();
    service->checkForUpdates();
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return service->state().kind == Kind::installing; }, 10'000));
    service.reset();
    QTest::qWait(50);
    EXPECT_TRUE(installer.packages.empty());
}

} // namespace
} // namespace quillabrae::services
