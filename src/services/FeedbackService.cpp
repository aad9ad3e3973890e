// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/FeedbackService.h"

#include "model/JsonError.h"
#include "model/JsonFields.h"
#include "model/RecordCoding.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextBoundaryFinder>

#include <chrono>
#include <utility>

namespace quillabrae::services {
namespace {

/// The context of this file's texts, for translators.
struct FeedbackTexts {
    Q_DECLARE_TR_FUNCTIONS(FeedbackTexts)
};

using platform::HttpFailure;
using platform::HttpReply;

/// The answer of a failure.
struct FeedbackErrorPayload {
    std::optional<QString> error;
};

constexpr auto timeout = std::chrono::seconds(60);
/// An answer holds a sentence.
constexpr qint64 maximumReplyBytes = qint64{256} * 1024;

QJsonValue imagePayload(const std::optional<FeedbackImageAttachment>& image) {
    if (!image) return QJsonValue::Null;
    return QJsonObject{
        {QStringLiteral("content"), QString::fromLatin1(image->data.toBase64())},
        {QStringLiteral("contentType"), QStringLiteral("image/jpeg")},
        {QStringLiteral("filename"), image->filename},
    };
}

QByteArray feedbackPayload(const QString& feedback,
                           const std::optional<FeedbackImageAttachment>& image,
                           const ProgramIdentity& program) {
    const QJsonObject payload{
        {QStringLiteral("feedback"), feedback},
        {QStringLiteral("appVersion"), program.version},
        {QStringLiteral("systemVersion"), program.operatingSystemVersion},
        {QStringLiteral("image"), imagePayload(image)},
    };
    return QJsonDocument(payload).toJson(QJsonDocument::Compact);
}

} // namespace
} // namespace quillabrae::services

namespace quillabrae::model {

template <>
struct JsonForm<services::FeedbackErrorPayload> {
    static constexpr auto fields =
        jsonFields(optional("error", &services::FeedbackErrorPayload::error));
    static void read(JsonReader& reader, services::FeedbackErrorPayload& payload) {
        readFields(reader, payload, fields);
    }
};

} // namespace quillabrae::model

namespace quillabrae::services {
namespace {

/// What the server says of its refusal; empty where that cannot be read.
QString wordsOf(const QByteArray& body) {
    try {
        return model::decodedJson<FeedbackErrorPayload>(body).error.value_or(QString());
    } catch (const model::JsonError&) {
        return {};
    }
}

} // namespace

FeedbackError FeedbackError::invalidFeedback() {
    return {FeedbackTexts::tr("Enter feedback of up to 5,000 characters.")};
}
FeedbackError FeedbackError::invalidResponse() {
    return {FeedbackTexts::tr("Quillabrae received an invalid response from the server.")};
}
FeedbackError FeedbackError::server(const QString& message) {
    return {message};
}
FeedbackError FeedbackError::noService() {
    return {
        FeedbackTexts::tr("This build of Quillabrae has no feedback service configured, so "
                          "nothing can be sent.")};
}

int feedbackLength(const QString& text, int limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int count = 0;
    while (count < limit && finder.toNextBoundary() > 0) ++count;
    return count;
}

std::optional<FeedbackError> feedbackOutcome(const HttpReply& reply) {
    if (reply.status == 0) return FeedbackError::invalidResponse();
    if (reply.status >= 200 && reply.status <= 299) return std::nullopt;
    const QString words = wordsOf(reply.body);
    return FeedbackError::server(
        words.isEmpty() ? FeedbackTexts::tr("Feedback could not be sent. Please try again.")
                        : words);
}

FeedbackService::FeedbackService(platform::HttpClient& http, WebService service,
                                 ProgramIdentity program)
    : m_http(http), m_service(std::move(service)), m_program(std::move(program)) {}

std::unique_ptr<platform::HttpExchange> FeedbackService::send(
    const QString& feedback, const std::optional<FeedbackImageAttachment>& image,
    platform::HttpClient::Watch watch, Completion completion) const {
    const auto refuse = [&](const FeedbackError& error) {
        completion(error);
        return nullptr;
    };
    if (!isConfigured()) return refuse(FeedbackError::noService());
    const int length = feedbackLength(feedback, greatestFeedbackLength + 1);
    if (length < 1 || length > greatestFeedbackLength)
        return refuse(FeedbackError::invalidFeedback());
    const platform::HttpRequest request{
        m_service.at(QStringLiteral("/api/feedback")),
        "POST",
        {{"Content-Type", "application/json"},
         {"Accept", "application/json"},
         {"X-Quillabrae-Client", "app"},
         {"User-Agent", "Quillabrae-macOS/" + m_program.version.toUtf8()}},
        feedbackPayload(feedback, image, m_program),
        timeout,
        maximumReplyBytes};
    return m_http.send(request, std::move(watch),
                       [completion = std::move(completion)](const platform::HttpOutcome& outcome) {
                           if (const auto* failure = std::get_if<HttpFailure>(&outcome))
                               completion(FeedbackError::server(failure->description));
                           else
                               completion(feedbackOutcome(std::get<HttpReply>(outcome)));
                       });
}

} // namespace quillabrae::services
