// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"
#include "services/FeedbackImageAttachment.h"
#include "services/ProgramIdentity.h"
#include "services/WebService.h"

#include <QString>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

namespace quillabrae::services {

/// Why feedback was not sent, as a sentence for the user.
struct FeedbackError {
    QString description;

    static FeedbackError invalidFeedback();
    static FeedbackError invalidResponse();
    /// What the server says.
    static FeedbackError server(const QString& message);
    /// The build was made without a service to send to.
    static FeedbackError noService();

    friend bool operator==(const FeedbackError&, const FeedbackError&) = default;
};

constexpr int greatestFeedbackLength = 5'000;

/// How long a text is for those who read it: its grapheme clusters, counted no further than to
/// `limit`.
int feedbackLength(const QString& text, int limit = std::numeric_limits<int>::max());

/// Sends users' words to the makers of the program.
class FeedbackService {
public:
    /// `http` outlives this.
    FeedbackService(platform::HttpClient& http, WebService service, ProgramIdentity program);

    bool isConfigured() const { return m_service.isConfigured(); }

    /// Nothing for success. Nothing is called any more once the returned exchange is destroyed;
    /// where nothing can be sent, there is none and `completion` has been called.
    using Completion = std::function<void(std::optional<FeedbackError>)>;
    std::unique_ptr<platform::HttpExchange> send(
        const QString& feedback, const std::optional<FeedbackImageAttachment>& image,
        platform::HttpClient::Watch watch, Completion completion) const;

private:
    platform::HttpClient& m_http;
    WebService m_service;
    ProgramIdentity m_program;
};

/// What a whole answer means; nothing for success.
std::optional<FeedbackError> feedbackOutcome(const platform::HttpReply& reply);

} // namespace quillabrae::services
