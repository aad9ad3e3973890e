// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NameLookup.h"

#include <QHostAddress>
#include <QMetaObject>
#include <QMutex>
#include <QMutexLocker>
#include <QUrl>

#include <netdb.h>
#include <sys/socket.h>

#include <thread>

namespace quillabrae::platform {
namespace {

NameLookup::Outcome lookUp(const QByteArray& host) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_ADDRCONFIG;
    addrinfo* addresses = nullptr;
    if (::getaddrinfo(host.constData(), nullptr, &hints, &addresses) != 0)
        return NameLookup::Outcome::unknown;
    ::freeaddrinfo(addresses);
    return NameLookup::Outcome::found;
}

} // namespace

/// Where the thread finds the one who asked, as long as that is there.
struct NameLookup::Meeting {
    QMutex mutex;
    NameLookup* asker = nullptr;
};

NameLookup::NameLookup(const QString& host) : m_meeting(std::make_shared<Meeting>()) {
    m_meeting->asker = this;
    std::thread([meeting = m_meeting, name = QUrl::toAce(host)] {
        const Outcome outcome = lookUp(name);
        const QMutexLocker lock(&meeting->mutex);
        if (NameLookup* asker = meeting->asker)
            QMetaObject::invokeMethod(
                asker, [asker, outcome] { asker->finish(outcome); }, Qt::QueuedConnection);
    }).detach();
}

NameLookup::~NameLookup() {
    const QMutexLocker lock(&m_meeting->mutex);
    m_meeting->asker = nullptr;
}

void NameLookup::finish(Outcome outcome) {
    m_isFinished = true;
    Q_EMIT finished(outcome);
}

bool isName(const QString& host) {
    return QHostAddress(host).isNull();
}

} // namespace quillabrae::platform
