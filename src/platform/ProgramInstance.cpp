// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProgramInstance.h"

#include "platform/HandOver.h"
#include "platform/ProgramLink.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>

#include <sys/stat.h>
#include <unistd.h>

namespace quillabrae::platform {
namespace {

constexpr std::chrono::milliseconds retryInterval{20};
constexpr std::chrono::seconds longestMessageTime{10};

/// Whether a folder is this user's and nobody else can enter it.
bool isPrivate(const QString& folder) {
    struct stat information {};
    return ::lstat(QFile::encodeName(folder).constData(), &information) == 0 &&
           S_ISDIR(information.st_mode) && information.st_uid == ::geteuid() &&
           (information.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

QString privateFolder() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && isPrivate(runtime)) return runtime;
    const QString own = QDir::tempPath() + QStringLiteral("/quillabrae-%1").arg(::geteuid());
    ::mkdir(QFile::encodeName(own).constData(), S_IRWXU);
    return isPrivate(own) ? own : QString();
}

/// One peer's message, until it is whole, broken or late.
class Visitor final : public QObject {
public:
    using Taken = std::function<void(const StartRequest&)>;

    Visitor(QLocalSocket* socket, QObject* parent, Taken taken)
        : QObject(parent), m_socket(socket), m_taken(std::move(taken)) {
        m_socket->setParent(this);
        m_socket->setReadBufferSize(HandOver::maximumPayload);
        connect(m_socket, &QLocalSocket::readyRead, this, &Visitor::listen);
        connect(m_socket, &QLocalSocket::disconnected, this, &QObject::deleteLater);
        QTimer::singleShot(longestMessageTime, this, &QObject::deleteLater);
        listen();
    }

private:
    void listen() {
        m_received += m_socket->readAll();
        const HandOver::Reading reading = HandOver::read(m_received);
        if (reading.progress == HandOver::Progress::incomplete) return;
        // Whoever hears of the request may run an event loop of its own, so this ends here first.
        m_socket->disconnect(this);
        deleteLater();
        if (reading.progress == HandOver::Progress::malformed) return;
        m_socket->write(HandOver::answer);
        m_socket->flush();
        m_taken(reading.request);
    }

    QLocalSocket* m_socket;
    Taken m_taken;
    QByteArray m_received;
};

/// Whether the running program has taken the request.
bool handOver(const QString& server, const StartRequest& request, const QDeadlineTimer& deadline) {
    const auto remaining = [&] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(server);
    if (!socket.waitForConnected(remaining())) return false;
    socket.write(HandOver::message(request));
    const QByteArray expected(HandOver::answer);
    while (socket.bytesAvailable() < expected.size()) {
        if (!socket.waitForReadyRead(remaining())) break;
    }
    return socket.readAll().startsWith(expected);
}

} // namespace

MeetingPlace MeetingPlace::standard(const QString& applicationSupport) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(applicationSupport.toUtf8());
    for (const char* screen : {"WAYLAND_DISPLAY", "DISPLAY"}) {
        hash.addData("\n");
        hash.addData(qgetenv(screen));
    }
    constexpr qsizetype keyLength = 16;
    const QByteArray key = hash.result().toHex().first(keyLength);
    return {privateFolder(), QStringLiteral("quillabrae-") + QString::fromLatin1(key)};
}

ProgramInstance::ProgramInstance(MeetingPlace place, QObject* parent)
    : QObject(parent), m_place(std::move(place)) {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &ProgramInstance::greet);
}

ProgramInstance::~ProgramInstance() = default;

QString ProgramInstance::pathOf(QStringView suffix) const {
    return m_place.folder + u'/' + m_place.key + suffix.toString();
}

ProgramInstance::Role ProgramInstance::start(const StartRequest& request,
                                             std::chrono::milliseconds patience) {
    if (m_place.folder.isEmpty()) return Role::first;
    const QDeadlineTimer deadline(patience);
    do {
        m_lock = FileLock(pathOf(u".lock"));
        if (m_lock.state() == FileLock::State::unavailable) return Role::first;
        if (m_lock.isHeld()) {
            listen();
            return Role::first;
        }
        if (handOver(pathOf(u".socket"), request, deadline)) return Role::second;
        // The other one has only just started, or is ending; the lock tells which.
        QThread::msleep(static_cast<unsigned long>(retryInterval.count()));
    } while (!deadline.hasExpired());
    return Role::unanswered;
}

void ProgramInstance::listen() {
    // Whoever left a socket here held the lock before.
    QLocalServer::removeServer(pathOf(u".socket"));
    m_server.listen(pathOf(u".socket"));
}

void ProgramInstance::greet() {
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        new Visitor(socket, this, [this](const StartRequest& request) { Q_EMIT asked(request); });
    }
}

} // namespace quillabrae::platform
