// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIImageEditService.h"

#include "effects/MultipartBody.h"
#include "model/JsonError.h"
#include "model/JsonFields.h"
#include "model/RecordCoding.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QUuid>

#include <chrono>
#include <optional>
#include <vector>

namespace quillabrae::effects {
namespace {

/// The context of this file's texts, for translators.
struct ImageEditTexts {
    Q_DECLARE_TR_FUNCTIONS(ImageEditTexts)
};

using platform::HttpFailure;
using platform::HttpReply;

/// The answer of a success, as far as it is looked at.
struct Success {
    struct Datum {
        std::optional<QByteArray> picture;
    };
    std::vector<Datum> data;
};

/// The answer of a failure.
struct Failure {
    struct Error {
        std::optional<QString> message;
    };
    Error error;
};

/// The largest picture that is read here comes to less as a PNG in base64.
constexpr qint64 maximumReplyBytes = qint64{512} * 1024 * 1024;

/// Whether the user's key is safe on the way there.
bool mayCarryKeys(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty()) return false;
    if (url.scheme() == QStringLiteral("https")) return true;
    return url.scheme() == QStringLiteral("http") && QHostAddress(url.host()).isLoopback();
}

QString prompt(const GenerativeFillRequest& request) {
    QString text = request.prompt.trimmed();
    if (request.providesCanvasContext)
        text += QStringLiteral(
            "\n\nUse the unmasked parts of the image as visual context. Only change the "
            "transparent masked area. Continue visible objects naturally into the masked area, "
            "preserving the existing scale, lighting, perspective, texture, and background.");
    return text;
}

MultipartFile pngFile(const QString& name, const QString& filename, const model::PngBytes& bytes) {
    return {name, filename, QStringLiteral("image/png"), bytes.toByteArray()};
}

} // namespace
} // namespace quillabrae::effects

namespace quillabrae::model {

template <>
struct JsonForm<effects::Success::Datum> {
    static void read(JsonReader& reader, effects::Success::Datum& datum) {
        reader.object([&](std::string_view key) {
            if (key == "b64_json" && !reader.takeNull()) datum.picture = reader.bytesIfBase64();
        });
    }
};

template <>
struct JsonForm<effects::Success> {
    static constexpr auto fields = jsonFields(required("data", &effects::Success::data));
    static void read(JsonReader& reader, effects::Success& success) {
        readFields(reader, success, fields);
    }
};

template <>
struct JsonForm<effects::Failure::Error> {
    static constexpr auto fields =
        jsonFields(optional("message", &effects::Failure::Error::message));
    static void read(JsonReader& reader, effects::Failure::Error& error) {
        readFields(reader, error, fields);
    }
};

template <>
struct JsonForm<effects::Failure> {
    static constexpr auto fields = jsonFields(required("error", &effects::Failure::error));
    static void read(JsonReader& reader, effects::Failure& failure) {
        readFields(reader, failure, fields);
    }
};

} // namespace quillabrae::model

namespace quillabrae::effects {
namespace {

OpenAIImageEditError refusal(const HttpReply& reply) {
    const QString status = ImageEditTexts::tr("OpenAI returned HTTP %1.").arg(reply.status);
    try {
        const auto failure = model::decodedJson<Failure>(reply.body);
        return OpenAIImageEditError::api(failure.error.message.value_or(status));
    } catch (const model::JsonError&) {
        return OpenAIImageEditError::api(status);
    }
}

} // namespace

OpenAIImageEditError OpenAIImageEditError::api(const QString& message) {
    return {message};
}
OpenAIImageEditError OpenAIImageEditError::invalidURL() {
    return {ImageEditTexts::tr("The OpenAI image edit URL is invalid.")};
}
OpenAIImageEditError OpenAIImageEditError::invalidResponse() {
    return {ImageEditTexts::tr("OpenAI returned an invalid response.")};
}
OpenAIImageEditError OpenAIImageEditError::missingImageData() {
    return {ImageEditTexts::tr("OpenAI did not return image data.")};
}

ImageEditOutcome imageEditOutcome(const HttpReply& reply) {
    if (reply.status == 0) return OpenAIImageEditError::invalidResponse();
    if (reply.status < 200 || reply.status > 299) return refusal(reply);
    try {
        const auto success = model::decodedJson<Success>(reply.body);
        if (success.data.empty() || !success.data.front().picture)
            return OpenAIImageEditError::missingImageData();
        return *success.data.front().picture;
    } catch (const model::JsonError& error) {
        return OpenAIImageEditError{error.description()};
    }
}

OpenAIImageEditService::OpenAIImageEditService(platform::HttpClient& http, QUrl baseURL)
    : m_http(http), m_baseURL(std::move(baseURL)) {}

std::unique_ptr<platform::HttpExchange> OpenAIImageEditService::editImage(
    const QString& apiKey, const GenerativeFillRequest& request,
    const model::PngBytes& imagePNGData, const model::PngBytes& maskPNGData,
    platform::HttpClient::Watch watch, std::function<void(ImageEditOutcome)> completion) const {
    if (!mayCarryKeys(m_baseURL)) {
        completion(OpenAIImageEditError::invalidURL());
        return nullptr;
    }
    const QString boundary = QStringLiteral("Quillabrae-") +
                             QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const platform::HttpRequest message{
        m_baseURL.resolved(QUrl(QStringLiteral("/v1/images/edits"))),
        "POST",
        {{"Authorization", "Bearer " + apiKey.toUtf8()},
         {"Content-Type", "multipart/form-data; boundary=" + boundary.toUtf8()}},
        multipartBody(
            boundary,
            {{QStringLiteral("model"), rawText(request.model)},
             {QStringLiteral("prompt"), prompt(request)}},
            {pngFile(QStringLiteral("image"), QStringLiteral("selection.png"), imagePNGData),
             pngFile(QStringLiteral("mask"), QStringLiteral("mask.png"), maskPNGData)}),
        std::chrono::seconds(180),
        maximumReplyBytes};
    return m_http.send(message, std::move(watch),
                       [completion = std::move(completion)](const platform::HttpOutcome& outcome) {
                           if (const auto* failure = std::get_if<HttpFailure>(&outcome))
                               completion(OpenAIImageEditError{failure->description});
                           else
                               completion(imageEditOutcome(std::get<HttpReply>(outcome)));
                       });
}

} // namespace quillabrae::effects
