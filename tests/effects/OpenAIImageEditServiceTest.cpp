// SPDX-License-Identifier: GPL-3.0-or-later
// The image-edit client against a real server on loopback.
#include "effects/OpenAIImageEditService.h"
#include "platform/NetworkHttpClient.h"
#include "support/LoopbackServer.h"

#include <QRegularExpression>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::effects {
namespace {

using tests::LoopbackServer;

constexpr char contextHint[] =
    "\n\nUse the unmasked parts of the image as visual context. Only change the transparent masked "
    "area. Continue visible objects naturally into the masked area, preserving the existing scale, "
    "lighting, perspective, texture, and background.";

class OpenAIImageEditServiceTest : public testing::Test {
protected:
    ImageEditOutcome edit(const QUrl& url) {
        const OpenAIImageEditService service(http, url);
        std::optional<ImageEditOutcome> found;
        const auto exchange =
            service.editImage(QStringLiteral("sk-canary"), request, image, mask, {},
                              [&](ImageEditOutcome outcome) { found = std::move(outcome); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return found.has_value(); }, 20'000));
        return found.value_or(OpenAIImageEditError{QStringLiteral("nothing came")});
    }
    ImageEditOutcome answer(int status, const QByteArray& body, const QByteArray& headers = {}) {
        const LoopbackServer server(LoopbackServer::respond(status, body, headers));
        return edit(server.url());
    }
    QString error(int status, const QByteArray& body, const QByteArray& headers = {}) {
        return errorIn(answer(status, body, headers));
    }
    static QString errorIn(const ImageEditOutcome& outcome) {
        const auto* error = std::get_if<OpenAIImageEditError>(&outcome);
        return error ? error->description : QStringLiteral("a picture");
    }
    static QByteArray bytesIn(const ImageEditOutcome& outcome) {
        const auto* bytes = std::get_if<QByteArray>(&outcome);
        EXPECT_TRUE(bytes) << qPrintable(errorIn(outcome));
        return bytes ? *bytes : QByteArray();
    }

    platform::NetworkHttpClient http;
    GenerativeFillRequest request{QStringLiteral("  a red hat\n"),
                                  GenerativeFillImageModel::gptImage1Mini, false};
    model::PngBytes image{QByteArray("the image\r\n\0--", 13)};
    model::PngBytes mask{QByteArray("the mask")};
};

TEST_F(OpenAIImageEditServiceTest, SendsTheKeyTheFieldsAndTheFilesByteForByte) {
    const LoopbackServer server(LoopbackServer::respond(200, R"({"data":[{"b64_json":"aGk="}]})"));
    EXPECT_EQ(bytesIn(edit(server.url())), "hi");
    ASSERT_EQ(server.requests().size(), 1U);
    LoopbackServer::Request sent = server.requests().front();
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.target, "/v1/images/edits");
    EXPECT_EQ(sent.headers["authorization"], "Bearer sk-canary");
    const QByteArray type = sent.headers["content-type"];
    const QByteArray prefix = "multipart/form-data; boundary=";
    ASSERT_TRUE(type.startsWith(prefix)) << type.constData();
    const QByteArray boundary = type.mid(prefix.size());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^Quillabrae-[0-9A-F]{8}(-[0-9A-F]{4}){3}-"
                                                  "[0-9A-F]{12}$"))
                    .match(QString::fromLatin1(boundary))
                    .hasMatch())
        << boundary.constData();
    const QByteArray line = "--" + boundary;
    EXPECT_EQ(sent.body,
              line + "\r\nContent-Disposition: form-data; name=\"model\"\r\n\r\n" +
                  "gpt-image-1-mini\r\n" + line +
                  "\r\nContent-Disposition: form-data; name=\"prompt\"\r\n\r\na red hat\r\n" +
                  line +
                  "\r\nContent-Disposition: form-data; name=\"image\"; "
                  "filename=\"selection.png\"\r\nContent-Type: image/png\r\n\r\n" +
                  image.toByteArray() + "\r\n" + line +
                  "\r\nContent-Disposition: form-data; name=\"mask\"; filename=\"mask.png\"\r\n"
                  "Content-Type: image/png\r\n\r\nthe mask\r\n" +
                  line + "--\r\n");
}

TEST_F(OpenAIImageEditServiceTest, TheContextIsExplainedAfterThePrompt) {
    const LoopbackServer server(LoopbackServer::respond(200, R"({"data":[{"b64_json":""}]})"));
    request.providesCanvasContext = true;
    edit(server.url());
    request.prompt = QStringLiteral(" \t\n ");
    edit(server.url());
    request.providesCanvasContext = false;
    edit(server.url());
    const QByteArray field = "name=\"prompt\"\r\n\r\n";
    const auto& sent = server.requests();
    ASSERT_EQ(sent.size(), 3U);
    EXPECT_TRUE(sent[0].body.contains(field + "a red hat" + contextHint + "\r\n"));
    EXPECT_TRUE(sent[1].body.contains(field + contextHint + "\r\n"));
    EXPECT_TRUE(sent[2].body.contains(field + "\r\n--"));
}

TEST_F(OpenAIImageEditServiceTest, ARefusalIsToldInTheServicesWords) {
    const QByteArray body = R"({"error":{"message":"Your “prompt” was rejected.","code":"x"}})";
    for (const int status : {400, 401, 403, 429, 500})
        EXPECT_EQ(error(status, body), QStringLiteral("Your “prompt” was rejected."));
}

TEST_F(OpenAIImageEditServiceTest, ARefusalWithoutWordsIsToldByItsStatus) {
    EXPECT_EQ(error(500, "<html><body>Oops</body></html>"),
              QStringLiteral("OpenAI returned HTTP 500."));
    EXPECT_EQ(error(429, ""), QStringLiteral("OpenAI returned HTTP 429."));
    EXPECT_EQ(error(401, R"({"error":{}})"), QStringLiteral("OpenAI returned HTTP 401."));
    EXPECT_EQ(error(400, R"({"error":{"message":null}})"),
              QStringLiteral("OpenAI returned HTTP 400."));
    EXPECT_EQ(error(400, R"({"error":"no object"})"), QStringLiteral("OpenAI returned HTTP 400."));
    EXPECT_EQ(error(400, R"({"error":{"message":5}})"),
              QStringLiteral("OpenAI returned HTTP 400."));
}

TEST_F(OpenAIImageEditServiceTest, AnAnswerWithoutAPictureSaysSo) {
    const QString missing = QStringLiteral("OpenAI did not return image data.");
    EXPECT_EQ(error(200, R"({"data":[]})"), missing);
    EXPECT_EQ(error(200, R"({"data":[{}]})"), missing);
    EXPECT_EQ(error(200, R"({"data":[{"b64_json":null}]})"), missing);
    EXPECT_EQ(error(200, R"({"data":[{"b64_json":"not base64!"}]})"), missing);
    EXPECT_EQ(error(200, R"({"data":[{"url":"x"},{"b64_json":"aGk="}]})"), missing);
}

TEST_F(OpenAIImageEditServiceTest, AnAnswerThatIsNotUnderstoodIsAnError) {
    for (const char* body :
         {"", "{", "[]", R"({"created":1})", R"({"data":{}})", R"({"data":[{"b64_json":7}]})",
          R"({"data":[{"b64_json":"aGk="}]}x)"}) {
        const ImageEditOutcome outcome = answer(200, body);
        EXPECT_TRUE(std::holds_alternative<OpenAIImageEditError>(outcome)) << body;
        EXPECT_NE(errorIn(outcome), OpenAIImageEditError::missingImageData().description) << body;
    }
}

TEST_F(OpenAIImageEditServiceTest, TheFirstOfSeveralPicturesCounts) {
    EXPECT_EQ(
        bytesIn(answer(201, R"({"created":1,"data":[{"b64_json":"YQ=="},{"b64_json":"Yg=="}]})")),
        "a");
}

TEST_F(OpenAIImageEditServiceTest, APictureOfSixtyMegabytesComesWhole) {
    const QByteArray picture(qsizetype{45} * 1024 * 1024, 'p');
    EXPECT_EQ(bytesIn(answer(200, R"({"data":[{"b64_json":")" + picture.toBase64() + R"("}]})")),
              picture);
}

TEST_F(OpenAIImageEditServiceTest, TheKeyNeverFollowsARedirect) {
    const LoopbackServer elsewhere(
        LoopbackServer::respond(200, R"({"data":[{"b64_json":"aGk="}]})"));
    for (const int status : {301, 302, 307, 308})
        EXPECT_EQ(error(status, "", "Location: " + elsewhere.url().toEncoded() + "/\r\n"),
                  QStringLiteral("OpenAI returned HTTP %1.").arg(status));
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_F(OpenAIImageEditServiceTest, AConnectionThatBreaksIsToldAsItIs) {
    const LoopbackServer dropped([](const auto&, QTcpSocket& socket) { socket.abort(); });
    EXPECT_FALSE(errorIn(edit(dropped.url())).isEmpty());
    const tests::CertificateAuthority authority;
    const LoopbackServer unknown(LoopbackServer::respond(200, ""), authority.issue());
    EXPECT_FALSE(errorIn(edit(unknown.url())).isEmpty());
    EXPECT_TRUE(unknown.requests().empty());
}

TEST_F(OpenAIImageEditServiceTest, AnAddressThatCannotBeTrustedWithAKeyIsNotAsked) {
    for (const char* address :
         {"", "http://example.org", "ftp://127.0.0.1", "file:///etc/passwd", "https://", "nowhere"})
        EXPECT_EQ(errorIn(edit(QUrl(QString::fromLatin1(address)))),
                  QStringLiteral("The OpenAI image edit URL is invalid."))
            << address;
}

TEST(ImageEditOutcomes, WhatDoesNotSpeakHttpGivesAnInvalidResponse) {
    const ImageEditOutcome outcome = imageEditOutcome({0, "220 ready"});
    EXPECT_EQ(std::get<OpenAIImageEditError>(outcome).description,
              QStringLiteral("OpenAI returned an invalid response."));
}

TEST(GenerativeFillImageModels, AreKnownByTheirRawTexts) {
    const std::pair<const char*, const char*> expected[] = {
        {"gpt-image-2", "GPT Image 2"},
        {"gpt-image-1.5", "GPT Image 1.5"},
        {"gpt-image-1", "GPT Image 1"},
        {"gpt-image-1-mini", "GPT Image 1 Mini"}};
    const auto all = allGenerativeFillImageModels();
    ASSERT_EQ(all.size(), std::size(expected));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(rawText(all[i]), QString::fromLatin1(expected[i].first));
        EXPECT_EQ(title(all[i]), QString::fromLatin1(expected[i].second));
        EXPECT_EQ(generativeFillImageModelFromRawText(rawText(all[i])), all[i]);
    }
    EXPECT_FALSE(generativeFillImageModelFromRawText(QStringLiteral("gpt-image-3")));
}

} // namespace
} // namespace quillabrae::effects
