// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/GenerativeFillRequest.h"
#include "model/PngBytes.h"
#include "platform/HttpClient.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <variant>

namespace quillabrae::effects {

/// Why there is no picture, as a sentence for the user.
struct OpenAIImageEditError {
    QString description;

    /// What the service itself says.
    static OpenAIImageEditError api(const QString& message);
    static OpenAIImageEditError invalidURL();
    static OpenAIImageEditError invalidResponse();
    static OpenAIImageEditError missingImageData();

    friend bool operator==(const OpenAIImageEditError&, const OpenAIImageEditError&) = default;
};

/// The bytes of the picture as the service sent them, of no known kind or size.
using ImageEditOutcome = std::variant<QByteArray, OpenAIImageEditError>;

/// Has pictures changed by the remote service, with the user's own key.
class OpenAIImageEditService {
public:
    /// `baseURL` names the service's host, as in "https://example.org"; plain HTTP is accepted for
    /// a loopback address alone. `http` outlives this.
    OpenAIImageEditService(platform::HttpClient& http, QUrl baseURL);

    /// Sends the picture with a mask, both PNG, whose transparent pixels may be changed. The key
    /// goes to the service's host and nowhere else. Nothing is called any more once the returned
    /// exchange is destroyed; where the base URL is of no use, there is none and `completion` has
    /// been called.
    std::unique_ptr<platform::HttpExchange> editImage(
        const QString& apiKey, const GenerativeFillRequest& request,
        const model::PngBytes& imagePNGData, const model::PngBytes& maskPNGData,
        platform::HttpClient::Watch watch, std::function<void(ImageEditOutcome)> completion) const;

private:
    platform::HttpClient& m_http;
    QUrl m_baseURL;
};

/// What a whole answer of the service holds.
ImageEditOutcome imageEditOutcome(const platform::HttpReply& reply);

} // namespace quillabrae::effects
