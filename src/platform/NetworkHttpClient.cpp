// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NetworkHttpClient.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>

namespace quillabrae::platform {
namespace {

QNetworkRequest networkRequest(const HttpRequest& request) {
    QNetworkRequest prepared(request.url);
    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                          QNetworkRequest::ManualRedirectPolicy);
    prepared.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                          QNetworkRequest::AlwaysNetwork);
    prepared.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        prepared.setAttribute(attribute, QNetworkRequest::Manual);
    prepared.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Quillabrae"));
    prepared.setTransferTimeout(static_cast<int>(request.timeout.count()));
    for (const auto& [name, value] : request.headers) prepared.setRawHeader(name, value);
    return prepared;
}

class NetworkExchange final : public QObject, public HttpExchange {
public:
    NetworkExchange(QNetworkReply* reply, qint64 maximumReplyBytes, HttpClient::Watch watch,
                    HttpClient::Completion completion)
        : m_reply(reply),
          m_maximumReplyBytes(maximumReplyBytes),
          m_watch(std::move(watch)),
          m_completion(std::move(completion)) {
        connect(reply, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64 toSend) {
            // At the end it starts anew from nothing.
            if (toSend == 0) return;
            m_progress.sent = sent;
            m_progress.toSend = toSend;
            tell();
        });
        connect(reply, &QNetworkReply::downloadProgress, this, [this](qint64 now, qint64 expected) {
            m_progress.received = now;
            m_progress.expected = expected;
            tell();
        });
        connect(reply, &QNetworkReply::readyRead, this, &NetworkExchange::limit);
        connect(reply, &QNetworkReply::finished, this, &NetworkExchange::finish);
    }
    ~NetworkExchange() override {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

private:
    void tell() {
        if (m_watch) m_watch(m_progress);
    }
    void limit() {
        if (m_reply->bytesAvailable() <= m_maximumReplyBytes) return;
        m_isTooLong = true;
        m_reply->abort();
    }
    void finish() {
        const HttpClient::Completion completion = std::move(m_completion);
        completion(outcome());
    }
    HttpOutcome outcome() {
        if (m_isTooLong) return HttpFailure{QStringLiteral("The server's answer is too large.")};
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QNetworkReply::NetworkError error = m_reply->error();
        // An answer of refusal counts as an error too.
        if (status >= 400 || error == QNetworkReply::NoError)
            return HttpReply{status, m_reply->readAll()};
        // Nobody else aborts a reply that this object still listens to.
        if (error == QNetworkReply::OperationCanceledError)
            return HttpFailure{QStringLiteral("The request timed out.")};
        return HttpFailure{m_reply->errorString()};
    }

    QNetworkReply* m_reply;
    qint64 m_maximumReplyBytes;
    HttpClient::Watch m_watch;
    HttpClient::Completion m_completion;
    HttpProgress m_progress;
    bool m_isTooLong = false;
};

} // namespace

std::unique_ptr<HttpExchange> NetworkHttpClient::send(const HttpRequest& request, Watch watch,
                                                      Completion completion) {
    if (!m_network) m_network.emplace();
    QNetworkReply* reply =
        m_network->sendCustomRequest(networkRequest(request), request.method, request.body);
    return std::make_unique<NetworkExchange>(reply, request.maximumReplyBytes, std::move(watch),
                                             std::move(completion));
}

} // namespace quillabrae::platform
