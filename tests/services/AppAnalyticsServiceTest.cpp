// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MemoryPreferences.h"
#include "services/AppAnalyticsService.h"
#include "support/LoopbackServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

#include <chrono>

namespace quillabrae::services {
namespace {

using platform::HttpRequest;
using tests::CertificateAuthority;
using tests::LoopbackServer;
using tests::TrustedAuthority;

const QString switchKey = QStringLiteral("Quillabrae.shareAnonymousUsageData");
const QString versionKey = QStringLiteral("Quillabrae.analytics.lastTrackedVersion");

AnalyticsData common() {
    return {{QStringLiteral("app_version"), QStringLiteral("1.2.3")},
            {QStringLiteral("build"), QStringLiteral("45")},
            {QStringLiteral("channel"), QStringLiteral("beta")}};
}

/// What one event said, as the server sees it.
struct Received {
    QString name;
    AnalyticsData data;

    friend bool operator==(const Received&, const Received&) = default;
};

Received received(const QByteArray& body) {
    const QJsonObject payload =
        QJsonDocument::fromJson(body).object()[QStringLiteral("payload")].toObject();
    Received event{payload[QStringLiteral("name")].toString(), {}};
    const QJsonObject data = payload[QStringLiteral("data")].toObject();
    for (auto entry = data.begin(); entry != data.end(); ++entry)
        event.data.insert(entry.key(), entry.value().toString());
    return event;
}

/// A real server behind TLS, and what a first start of version 1.2.3 finds.
class AppAnalyticsServiceTest : public testing::Test {
protected:
    AppAnalyticsServiceTest() { serve(LoopbackServer::respond(200, "{}")); }
    ~AppAnalyticsServiceTest() override { service.reset(); }

    void serve(LoopbackServer::Answer answer) {
        server = std::make_unique<LoopbackServer>(std::move(answer), authority.issue());
    }
    std::optional<AppAnalyticsConfiguration> configuration() const {
        return AppAnalyticsConfiguration::from(server->url().resolved(QUrl(QStringLiteral("/api"))),
                                               QStringLiteral("site"),
                                               QStringLiteral("app.example"));
    }
    void start(const std::optional<AppAnalyticsConfiguration>& configuration) {
        service = std::make_unique<AppAnalyticsService>(configuration, preferences, identity);
    }
    /// One run of the program as far as the server sees it; the names of its events.
    QStringList launchExpecting(qsizetype count) {
        const std::size_t before = server->requests().size();
        start(configuration());
        service->trackLaunch();
        waitFor(before + static_cast<std::size_t>(count));
        settle();
        service.reset();
        QStringList names;
        for (std::size_t i = before; i < server->requests().size(); ++i)
            names << received(server->requests()[i].body).name;
        return names;
    }
    void waitFor(std::size_t count) const {
        EXPECT_TRUE(QTest::qWaitFor([&] { return server->requests().size() >= count; }, 10'000));
    }
    /// Time for what should not come.
    static void settle() { QTest::qWait(100); }

    CertificateAuthority authority;
    TrustedAuthority trusted{authority};
    std::unique_ptr<LoopbackServer> server;
    platform::MemoryPreferences preferences;
    ProgramIdentity identity{QStringLiteral("1.2.3"), QStringLiteral("45"), QStringLiteral("beta"),
                             QStringLiteral("pt-BR"), QStringLiteral("Debian 12")};
    std::unique_ptr<AppAnalyticsService> service;
};

TEST(AppAnalyticsEvent, HaveTheirNamesOnTheServer) {
    using enum AppAnalyticsEvent;
    const std::vector<std::pair<AppAnalyticsEvent, const char*>> names{
        {firstLaunch, "app_first_launch"}, {launch, "app_launch"},
        {updated, "app_updated"},          {projectCreated, "project_created"},
        {projectOpened, "project_opened"}, {projectSaved, "project_saved"},
        {imageExported, "image_exported"}, {generativeFillCompleted, "generative_fill_completed"}};
    for (const auto& [event, name] : names) EXPECT_EQ(eventName(event), QLatin1StringView(name));
}

TEST(AppAnalyticsConfiguration, NeedsHttpsAndEveryValue) {
    const auto isUsable = [](const char* endpoint, const char* id = "site",
                             const char* host = "app") {
        return AppAnalyticsConfiguration::from(QUrl(QString::fromLatin1(endpoint)),
                                               QString::fromLatin1(id), QString::fromLatin1(host))
            .has_value();
    };
    EXPECT_TRUE(isUsable("https://example.org/api/send"));
    EXPECT_TRUE(isUsable("HTTPS://example.org"));
    EXPECT_FALSE(isUsable("http://example.org/api/send"));
    EXPECT_FALSE(isUsable("http://127.0.0.1/"));
    EXPECT_FALSE(isUsable("example.org"));
    EXPECT_FALSE(isUsable("https://"));
    EXPECT_FALSE(isUsable(""));
    EXPECT_FALSE(isUsable("https://example.org", ""));
    EXPECT_FALSE(isUsable("https://example.org", "site", ""));
}

TEST_F(AppAnalyticsServiceTest, AnEventIsOnePost) {
    start(configuration());
    service->track(AppAnalyticsEvent::projectSaved,
                   {{QStringLiteral("format"), QStringLiteral("quillabrae")}});
    waitFor(1);
    LoopbackServer::Request request = server->requests().front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/api");
    EXPECT_EQ(request.headers["content-type"], "application/json");
    EXPECT_EQ(request.headers["user-agent"], "Quillabrae/1.2.3 (macOS; Debian 12)");
    EXPECT_FALSE(request.headers.contains("cookie"));
    const QJsonObject expected{
        {QStringLiteral("type"), QStringLiteral("event")},
        {QStringLiteral("payload"),
         QJsonObject{{QStringLiteral("hostname"), QStringLiteral("app.example")},
                     {QStringLiteral("language"), QStringLiteral("pt-BR")},
                     {QStringLiteral("title"), QStringLiteral("Quillabrae for macOS")},
                     {QStringLiteral("url"), QStringLiteral("/macos-app")},
                     {QStringLiteral("website"), QStringLiteral("site")},
                     {QStringLiteral("name"), QStringLiteral("project_saved")},
                     {QStringLiteral("data"),
                      QJsonObject{{QStringLiteral("app_version"), QStringLiteral("1.2.3")},
                                  {QStringLiteral("build"), QStringLiteral("45")},
                                  {QStringLiteral("channel"), QStringLiteral("beta")},
                                  {QStringLiteral("format"), QStringLiteral("quillabrae")}}}}}};
    EXPECT_EQ(QJsonDocument::fromJson(request.body).object(), expected);
}

TEST_F(AppAnalyticsServiceTest, WhatTheProgramSaysOfItselfWins) {
    AnalyticsData data = common();
    for (QString& value : data) value = QStringLiteral("forged");
    data.insert(QStringLiteral("kind"), QStringLiteral("image"));
    const HttpRequest request =
        makeAnalyticsRequest(*configuration(), identity, AppAnalyticsEvent::projectOpened, data);
    AnalyticsData expected = common();
    expected.insert(QStringLiteral("kind"), QStringLiteral("image"));
    EXPECT_EQ(received(request.body).data, expected);
    EXPECT_EQ(request.timeout, std::chrono::seconds(10));
}

TEST_F(AppAnalyticsServiceTest, AHeaderCannotBeBrokenByTheSystemsName) {
    identity.operatingSystemVersion = QStringLiteral("a\r\nX-Forged: b");
    const HttpRequest request =
        makeAnalyticsRequest(*configuration(), identity, AppAnalyticsEvent::launch, {});
    for (const auto& [name, value] : request.headers) EXPECT_FALSE(value.contains('\n'));
}

TEST_F(AppAnalyticsServiceTest, ACleanFirstStartIsToldOnceAndEachStartIs) {
    EXPECT_EQ(launchExpecting(2),
              (QStringList{QStringLiteral("app_first_launch"), QStringLiteral("app_launch")}));
    EXPECT_EQ(preferences.value(versionKey), QVariant(QStringLiteral("1.2.3")));
    EXPECT_EQ(received(server->requests().front().body).data, common());
    EXPECT_EQ(launchExpecting(1), QStringList{QStringLiteral("app_launch")});
    EXPECT_EQ(received(server->requests().back().body).data, common());
}

TEST_F(AppAnalyticsServiceTest, AnotherVersionTellsBoth) {
    preferences.setValue(versionKey, QStringLiteral("1.0"));
    EXPECT_EQ(launchExpecting(2),
              (QStringList{QStringLiteral("app_updated"), QStringLiteral("app_launch")}));
    AnalyticsData expected = common();
    expected.insert(QStringLiteral("previous_version"), QStringLiteral("1.0"));
    expected.insert(QStringLiteral("current_version"), QStringLiteral("1.2.3"));
    EXPECT_EQ(received(server->requests().front().body).data, expected);
    EXPECT_EQ(preferences.value(versionKey), QVariant(QStringLiteral("1.2.3")));
    EXPECT_EQ(launchExpecting(1), QStringList{QStringLiteral("app_launch")});
}

TEST_F(AppAnalyticsServiceTest, WhatTheServerDidNotTakeIsTriedAtTheNextStart) {
    for (const int status : {199, 302, 400, 503}) {
        serve(LoopbackServer::respond(status, "", "Location: /elsewhere\r\n"));
        // The launch is reported all the same.
        launchExpecting(2);
        EXPECT_FALSE(preferences.value(versionKey).isValid()) << status;
    }
    serve(LoopbackServer::respond(204, ""));
    EXPECT_EQ(launchExpecting(2),
              (QStringList{QStringLiteral("app_first_launch"), QStringLiteral("app_launch")}));
    EXPECT_TRUE(preferences.value(versionKey).isValid());
}

TEST_F(AppAnalyticsServiceTest, WithoutANetworkTheFirstStartIsToldWhenThereIsOne) {
    auto nowhere = configuration();
    {
        const LoopbackServer gone(LoopbackServer::respond(200, ""));
        nowhere->endpoint.setPort(gone.url().port());
    }
    start(nowhere);
    service->trackLaunch();
    settle();
    service.reset();
    EXPECT_FALSE(preferences.value(versionKey).isValid());
    EXPECT_EQ(launchExpecting(2),
              (QStringList{QStringLiteral("app_first_launch"), QStringLiteral("app_launch")}));
}

TEST_F(AppAnalyticsServiceTest, AServerThatNobodyVouchesForGetsNothing) {
    const CertificateAuthority stranger;
    server = std::make_unique<LoopbackServer>(LoopbackServer::respond(200, ""), stranger.issue());
    start(configuration());
    service->trackLaunch();
    QTest::qWait(300);
    EXPECT_TRUE(server->requests().empty());
    EXPECT_FALSE(preferences.value(versionKey).isValid());
}

TEST_F(AppAnalyticsServiceTest, ARedirectIsNotFollowed) {
    const LoopbackServer elsewhere(LoopbackServer::respond(200, ""), authority.issue());
    serve(
        LoopbackServer::respond(307, "", "Location: " + elsewhere.url().toEncoded() + "/api\r\n"));
    launchExpecting(2);
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_F(AppAnalyticsServiceTest, WithoutAConfigurationNothingIsSent) {
    start(std::nullopt);
    EXPECT_FALSE(service->isEnabled());
    preferences.setValue(switchKey, true);
    EXPECT_FALSE(service->isEnabled());
    service->trackLaunch();
    service->track(AppAnalyticsEvent::projectCreated);
    settle();
    EXPECT_EQ(server->connectionCount(), 0);
}

TEST_F(AppAnalyticsServiceTest, SwitchedOffNothingIsSentAndTheUpdateIsToldOnceItIsOn) {
    preferences.setValue(versionKey, QStringLiteral("1.0"));
    preferences.setValue(switchKey, false);
    start(configuration());
    EXPECT_FALSE(service->isEnabled());
    service->trackLaunch();
    service->track(AppAnalyticsEvent::projectCreated);
    settle();
    service.reset();
    EXPECT_EQ(server->connectionCount(), 0);
    EXPECT_EQ(preferences.value(versionKey), QVariant(QStringLiteral("1.0")));
    preferences.setValue(switchKey, true);
    EXPECT_EQ(launchExpecting(2),
              (QStringList{QStringLiteral("app_updated"), QStringLiteral("app_launch")}));
}

TEST_F(AppAnalyticsServiceTest, OnlyAClearYesOrNoWordIsLeave) {
    start(configuration());
    EXPECT_TRUE(service->isEnabled());
    for (const QVariant& value : {QVariant(false), QVariant(QStringLiteral("false")),
                                  QVariant(QStringLiteral("nonsense")), QVariant(0)}) {
        preferences.setValue(switchKey, value);
        EXPECT_FALSE(service->isEnabled());
    }
    preferences.setValue(switchKey, QStringLiteral("true"));
    EXPECT_TRUE(service->isEnabled());
    preferences.remove(switchKey);
    EXPECT_TRUE(service->isEnabled());
}

TEST_F(AppAnalyticsServiceTest, TheSwitchStopsEventsAtOnce) {
    start(configuration());
    // Also those that were tracked and have not had their turn.
    for (int i = 0; i < 50; ++i) service->track(AppAnalyticsEvent::projectCreated);
    preferences.setValue(switchKey, false);
    service->track(AppAnalyticsEvent::projectSaved);
    QTest::qWait(300);
    const std::size_t sent = server->requests().size();
    EXPECT_LT(sent, 50U);
    preferences.setValue(switchKey, true);
    service->track(AppAnalyticsEvent::imageExported);
    waitFor(sent + 1);
    settle();
    ASSERT_EQ(server->requests().size(), sent + 1);
    EXPECT_EQ(received(server->requests().back().body).name, QStringLiteral("image_exported"));
}

TEST_F(AppAnalyticsServiceTest, AFirstStartThatIsSwitchedOffMeanwhileEndsThere) {
    serve([&](const auto& request, QTcpSocket& socket) {
        preferences.setValue(switchKey, false);
        LoopbackServer::respond(200, "")(request, socket);
    });
    EXPECT_EQ(launchExpecting(1), QStringList{QStringLiteral("app_first_launch")});
}

TEST_F(AppAnalyticsServiceTest, SeveralEventsAreEachOneTry) {
    serve(LoopbackServer::respond(500, ""));
    start(configuration());
    for (int i = 0; i < 5; ++i) service->track(AppAnalyticsEvent::projectCreated);
    waitFor(5);
    settle();
    EXPECT_EQ(server->requests().size(), 5U);
}

TEST_F(AppAnalyticsServiceTest, NobodyWaitsForAServerThatIsSilent) {
    using Clock = std::chrono::steady_clock;
    serve([](const auto&, QTcpSocket&) {});
    start(configuration());
    const auto before = Clock::now();
    service->trackLaunch();
    service->track(AppAnalyticsEvent::projectCreated);
    EXPECT_LT(Clock::now() - before, std::chrono::milliseconds(500));
    waitFor(2);
    const auto end = Clock::now();
    service.reset();
    // The request has ten seconds.
    EXPECT_LT(Clock::now() - end, std::chrono::seconds(2));
    EXPECT_FALSE(preferences.value(versionKey).isValid());
}

TEST_F(AppAnalyticsServiceTest, AnEndRightAfterTheStartIsFine) {
    for (int i = 0; i < 20; ++i) {
        start(configuration());
        service->trackLaunch();
        service.reset();
    }
}

/// Answers at once, on the service's thread, and notes what that was asked for.
class EagerTransport final : public AppAnalyticsTransport {
public:
    explicit EagerTransport(std::atomic<int>& sent) : m_sent(sent) {}
    std::unique_ptr<platform::HttpExchange> send(const HttpRequest&,
                                                 std::function<void(Outcome)> completion) override {
        ++m_sent;
        QMetaObject::invokeMethod(
            &m_home, [completion = std::move(completion)] { completion(Outcome::accepted); },
            Qt::QueuedConnection);
        return std::make_unique<platform::HttpExchange>();
    }

private:
    std::atomic<int>& m_sent;
    QObject m_home;
};

TEST_F(AppAnalyticsServiceTest, TheVersionIsKeptThoughTheProgramEndsAtThatMoment) {
    std::atomic<int> sent = 0;
    service = std::make_unique<AppAnalyticsService>(
        configuration(), preferences, identity,
        [&sent] { return std::make_unique<EagerTransport>(sent); });
    service->trackLaunch();
    // Without this thread's event loop, which would bring the version to the preferences.
    while (sent < 2) QThread::msleep(1);
    EXPECT_FALSE(preferences.value(versionKey).isValid());
    service.reset();
    EXPECT_EQ(preferences.value(versionKey), QVariant(QStringLiteral("1.2.3")));
}

} // namespace
} // namespace quillabrae::services
