// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HandOver.h"

#include "platform/ProgramLink.h"

#include <QFileInfo>
#include <QtEndian>

namespace quillabrae::platform::HandOver {
namespace {

constexpr QByteArrayView magic("quillabrae 1\n");
constexpr qsizetype headerSize = magic.size() + static_cast<qsizetype>(sizeof(quint32));

bool isAbsoluteFile(const QUrl& url) {
    return url.isValid() && url.isLocalFile() && QFileInfo(url.toLocalFile()).isAbsolute();
}

} // namespace

QByteArray message(const QList<QUrl>& urls) {
    QByteArray payload;
    for (const QUrl& url : urls) payload += url.toEncoded() + '\n';
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

    Reading reading{Progress::complete};
    for (const QByteArray& line : received.mid(headerSize, length).split('\n')) {
        const QUrl url = QUrl::fromEncoded(line, QUrl::StrictMode);
        if (isAbsoluteFile(url))
            reading.files.append(url);
        else if (isProgramLink(url))
            reading.links.append(url);
    }
    return reading;
}

} // namespace quillabrae::platform::HandOver
