// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NetworkHttpClient.h"

#include "platform/NameLookup.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QTimer>

namespace quillabrae::platform {
namespace {

/// The context of this file's texts, for translators.
struct NetworkHttpClientTexts {
    Q_DECLARE_TR_FUNCTIONS(NetworkHttpClientTexts)
};

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

QString timedOut() {
    return NetworkHttpClientTexts::tr("The request timed out.");
}

class NetworkExchange final : public QObject, public HttpExchange {
public:
    NetworkExchange(QNetworkAccessManager& network, HttpRequest request, HttpClient::Watch watch,
                    HttpClient::Completion completion)
        : m_network(network),
          m_request(std::move(request)),
          m_watch(std::move(watch)),
          m_completion(std::move(completion)) {}
    ~NetworkExchange() override {
        if (m_reply == nullptr) return;
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

    void sendAfter(std::shared_ptr<NameLookup> lookup) {
        m_lookup = std::move(lookup);
        // Queued, since it ends with the last exchange that waits for it.
        connect(m_lookup.get(), &NameLookup::finished, this, &NetworkExchange::takeLookup,
                Qt::QueuedConnection);
        QTimer::singleShot(m_request.timeout, this, [this] {
            if (m_lookup) fail(timedOut());
        });
    }

    void send() {
        QNetworkReply* reply = m_network.sendCustomRequest(networkRequest(m_request),
                                                           m_request.method, m_request.body);
        m_reply = reply;
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

private:
    void takeLookup(NameLookup::Outcome outcome) {
        m_lookup.reset();
        if (outcome == NameLookup::Outcome::found)
            send();
        else
            fail(NetworkHttpClientTexts::tr("Host %1 not found").arg(m_request.url.host()));
    }
    void fail(const QString& description) {
        m_lookup.reset();
        const HttpClient::Completion completion = std::move(m_completion);
        completion(HttpFailure{description});
    }
    void tell() {
        if (m_watch) m_watch(m_progress);
    }
    void limit() {
        if (m_reply->bytesAvailable() <= m_request.maximumReplyBytes) return;
        m_isTooLong = true;
        m_reply->abort();
    }
    void finish() {
        const HttpClient::Completion completion = std::move(m_completion);
        completion(outcome());
    }
    HttpOutcome outcome() {
        if (m_isTooLong)
            return HttpFailure{NetworkHttpClientTexts::tr("The server's answer is too large.")};
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QNetworkReply::NetworkError error = m_reply->error();
        // An answer of refusal counts as an error too.
        if (status >= 400 || error == QNetworkReply::NoError)
            return HttpReply{status, m_reply->readAll()};
        // Nobody else aborts a reply that this object still listens to.
        if (error == QNetworkReply::OperationCanceledError) return HttpFailure{timedOut()};
        return HttpFailure{m_reply->errorString()};
    }

    QNetworkAccessManager& m_network;
    HttpRequest m_request;
    std::shared_ptr<NameLookup> m_lookup;
    QNetworkReply* m_reply = nullptr;
    HttpClient::Watch m_watch;
    HttpClient::Completion m_completion;
    HttpProgress m_progress;
    bool m_isTooLong = false;
};

} // namespace

std::unique_ptr<HttpExchange> NetworkHttpClient::send(const HttpRequest& request, Watch watch,
                                                      Completion completion) {
    if (!m_network) m_network.emplace();
    auto exchange = std::make_unique<NetworkExchange>(*m_network, request, std::move(watch),
                                                      std::move(completion));
    const QString host = request.url.host();
    if (isName(host))
        exchange->sendAfter(lookup(host));
    else
        exchange->send();
    return exchange;
}

std::shared_ptr<NameLookup> NetworkHttpClient::lookup(const QString& host) {
    std::weak_ptr<NameLookup>& known = m_lookups[host];
    if (auto underWay = known.lock(); underWay && !underWay->isFinished()) return underWay;
    auto started = std::make_shared<NameLookup>(host);
    known = started;
    return started;
}

} // namespace quillabrae::platform
