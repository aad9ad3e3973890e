// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HandOver.h"

#include <QList>
#include <QUrl>
#include <QtEndian>

namespace quillabrae::platform::HandOver {
namespace {

constexpr QByteArrayView magic("quillabrae 1\n");
constexpr qsizetype headerSize = magic.size() + static_cast<qsizetype>(sizeof(quint32));

constexpr QByteArrayView tokenLine("activation-token:");

} // namespace

QByteArray message(const StartRequest& request) {
    QByteArray payload;
    for (const QUrl& url : request.files + request.links) payload += url.toEncoded() + '\n';
    if (!request.action.isEmpty()) payload += actionUrl(request.action).toEncoded() + '\n';
    if (!request.activationToken.isEmpty())
        payload += tokenLine.toByteArray() + request.activationToken + '\n';
    QByteArray length(sizeof(quint32), Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(payload.size()), length.data());
    return magic.toByteArray() + length + payload;
}

Reading read(const QByteArray& received) {
    const qsizetype known = std::min(received.size(), magic.size());
    if (QByteArrayView(received).first(known) != magic.first(known)) return {Progress::malformed};
    if (received.size() < headerSize) return {Progress::incomplete};

    const auto length =
        static_cast<qsizetype>(qFromBigEndian<quint32>(received.constData() + magic.size()));
    if (length > maximumPayload) return {Progress::malformed};
    if (received.size() < headerSize + length) return {Progress::incomplete};

    const QByteArray payload = received.mid(headerSize, length);
    if (payload.count('\n') > maximumLineCount) return {Progress::malformed};
    QList<QUrl> urls;
    QByteArray token;
    for (const QByteArray& line : payload.split('\n')) {
        if (line.startsWith(tokenLine))
            token = checkedToken(line.mid(tokenLine.size()));
        else
            urls.append(QUrl::fromEncoded(line, QUrl::StrictMode));
    }
    Reading reading{Progress::complete, sortedRequest(urls)};
    reading.request.activationToken = token;
    return reading;
}

} // namespace quillabrae::platform::HandOver
