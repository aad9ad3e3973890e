// SPDX-License-Identifier: GPL-3.0-or-later
// The whole way of a fill: from the store over the real client to a real server on loopback and
// back to the layer.
#include "effects/OpenAIImageEditService.h"
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"
#include "platform/NetworkHttpClient.h"
#include "store/CommandTest.h"
#include "support/LoopbackServer.h"

#include <QTcpSocket>
#include <QTest>

#include <random>

namespace quillabrae::store {
namespace {

using namespace std::chrono_literals;
using tests::LoopbackServer;

/// The real client, which loses its patience sooner than it was asked to.
class ImpatientHttpClient final : public platform::HttpClient {
public:
    std::chrono::milliseconds patience = 20s;
    std::chrono::milliseconds asked{};

    std::unique_ptr<platform::HttpExchange> send(const platform::HttpRequest& request, Watch watch,
                                                 Completion completion) override {
        asked = request.timeout;
        platform::HttpRequest sooner = request;
        sooner.timeout = patience;
        return m_client.send(sooner, std::move(watch), std::move(completion));
    }

private:
    platform::NetworkHttpClient m_client;
};

class GenerativeFillNetworkTest : public CommandTest {
protected:
    GenerativeFillNetworkTest() { keychain.saveAPIKey(QStringLiteral("sk-canary")); }

    /// What the fill of a selection ended with: the failure, or "applied".
    QString fillFrom(const LoopbackServer& server) {
        effects::OpenAIImageEditService imageEdit(http, server.url());
        generativeFill.emplace(GenerativeFillServices{keychain, imageEdit});
        store = makeStore(Persistence::off);
        id = makeProject(*store);
        selectRect({2, 1, 3, 2});
        before = project();
        std::optional<QString> end;
        progress.clear();
        store->performGenerativeFill(
            {QStringLiteral("a hat"), effects::GenerativeFillImageModel::gptImage1, false},
            [&](const std::optional<QString>& failure) {
                end = failure.value_or(QStringLiteral("applied"));
            },
            [this](const platform::HttpProgress& now) { progress.push_back(now); });
        // The store goes on meanwhile.
        store->setStatusMessage(QStringLiteral("Waiting"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return end.has_value(); }, 30'000));
        return end.value_or(QStringLiteral("nothing came"));
    }
    QString fillAnswered(int status, const QByteArray& body) {
        const LoopbackServer server(LoopbackServer::respond(status, body));
        return fillFrom(server);
    }
    static QByteArray answerWith(const QImage& image) {
        const auto png = raster::encodedImage(raster::RasterImage::fromQImage(QImage(image)));
        return R"({"data":[{"b64_json":")" + png.toByteArray().toBase64() + R"("}]})";
    }
    static QImage red(int width, int height) {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(Qt::red);
        return image;
    }
    /// Opaque colours that no compression makes smaller.
    static QImage noise(int side) {
        QImage image(side, side, QImage::Format_RGB32);
        std::mt19937 random(7);
        for (int y = 0; y < side; ++y) {
            auto* line = reinterpret_cast<quint32*>(image.scanLine(y));
            for (int x = 0; x < side; ++x) line[x] = 0xff000000U | static_cast<quint32>(random());
        }
        return image;
    }
    void expectNothingChanged() {
        EXPECT_EQ(project(), before);
        EXPECT_EQ(store->history(id).entries.size(), 1U);
    }

    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    ImpatientHttpClient http;
    model::PaintProject before;
    std::vector<platform::HttpProgress> progress;
};

TEST_F(GenerativeFillNetworkTest, APictureLandsInTheSelection) {
    const LoopbackServer server(LoopbackServer::respond(200, answerWith(red(3, 2))));
    EXPECT_EQ(fillFrom(server), QStringLiteral("applied"));
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(server.requests().front().headers.at("authorization"), "Bearer sk-canary");
    EXPECT_EQ(http.asked, 180s);
}

TEST_F(GenerativeFillNetworkTest, WhatTheServiceRefusesIsToldInItsWords) {
    struct Case {
        int status;
        const char* body;
        const char* told;
    };
    for (const Case& row : {
             Case{400, R"({"error":{"message":"Bad mask."}})", "Bad mask."},
             Case{401, R"({"error":{"message":"Bad key."}})", "Bad key."},
             Case{429, R"({"error":{"message":"Slow down."}})", "Slow down."},
             Case{500, "<html>oh dear</html>", "OpenAI returned HTTP 500."},
             Case{307, "", "OpenAI returned HTTP 307."},
             Case{200, R"({"data":[]})", "OpenAI did not return image data."},
             Case{200, R"({"data":[{"b64_json":"%%%"}]})", "OpenAI did not return image data."},
         }) {
        EXPECT_EQ(fillAnswered(row.status, row.body), QString::fromLatin1(row.told));
        expectNothingChanged();
    }
    EXPECT_NE(fillAnswered(200, R"({"data":[{"b64_json":"aGVsbG8="}]})"),
              QStringLiteral("applied"));
    expectNothingChanged();
}

TEST_F(GenerativeFillNetworkTest, AServerThatHangsIsGivenUpAtTheTimeOut) {
    http.patience = 200ms;
    const LoopbackServer silent([](const auto&, QTcpSocket&) {});
    EXPECT_EQ(fillFrom(silent), QStringLiteral("The request timed out."));
    expectNothingChanged();
    // One that stops in the middle of its answer.
    const QByteArray answer = answerWith(red(3, 2));
    const LoopbackServer stopping([&](const auto&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(answer.size()) +
                     "\r\n\r\n" + answer.first(20));
    });
    EXPECT_EQ(fillFrom(stopping), QStringLiteral("The request timed out."));
    expectNothingChanged();
}

TEST_F(GenerativeFillNetworkTest, AnAnswerThatTricklesLandsAllTheSame) {
    http.patience = 400ms;
    const QByteArray answer = answerWith(red(3, 2));
    const LoopbackServer server([&](const auto&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(answer.size()) +
                     "\r\n\r\n");
        constexpr qsizetype drop = 12;
        for (qsizetype at = 0; at < answer.size(); at += drop) {
            socket.write(answer.mid(at, drop));
            socket.flush();
            QTest::qWait(30);
        }
    });
    EXPECT_EQ(fillFrom(server), QStringLiteral("applied"));
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
}

TEST_F(GenerativeFillNetworkTest, AConnectionThatBreaksChangesNothing) {
    const LoopbackServer dropped([](const auto&, QTcpSocket& socket) { socket.abort(); });
    const QString told = fillFrom(dropped);
    EXPECT_NE(told, QStringLiteral("applied"));
    EXPECT_FALSE(told.isEmpty());
    expectNothingChanged();
}

TEST_F(GenerativeFillNetworkTest, AReplyOfSixtyMegabytesLandsPixelByPixel) {
    constexpr int side = 3904;
    const QImage picture = noise(side);
    const QByteArray answer = answerWith(picture);
    ASSERT_GT(answer.size(), qsizetype{60'000'000});
    EXPECT_EQ(fillAnswered(200, answer), QStringLiteral("applied"));
    const auto source = [](int index, int count) { return (2 * index + 1) * side / (2 * count); };
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(pixel(0, 2 + x, 1 + y).rgb(), picture.pixel(source(x, 3), source(y, 2)))
                << x << ' ' << y;
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.back().received, answer.size());
    EXPECT_EQ(progress.back().expected, answer.size());
}

TEST_F(GenerativeFillNetworkTest, AServerThatNobodyVouchesForIsToldNothing) {
    const tests::CertificateAuthority authority;
    const LoopbackServer server(LoopbackServer::respond(200, answerWith(red(3, 2))),
                                authority.issue());
    const QString told = fillFrom(server);
    EXPECT_NE(told, QStringLiteral("applied"));
    EXPECT_FALSE(told.contains(QStringLiteral("canary"))) << qPrintable(told);
    EXPECT_TRUE(server.requests().empty());
    expectNothingChanged();
}

TEST_F(GenerativeFillNetworkTest, AServerThatSomebodyVouchesForIsSpokenWith) {
    const tests::CertificateAuthority authority;
    const LoopbackServer server(LoopbackServer::respond(200, answerWith(red(3, 2))),
                                authority.issue());
    const tests::TrustedAuthority trusted(authority);
    EXPECT_EQ(fillFrom(server), QStringLiteral("applied"));
}

} // namespace
} // namespace quillabrae::store
