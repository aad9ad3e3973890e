// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever is sent to the running program, in whichever pieces: it is asked for what the message
// says, once, and the sender is answered, or it is not asked and not answered. The first byte is
// the length of the pieces, 0 for one of all.
#include "FuzzInput.h"
#include "platform/HandOver.h"
#include "platform/ProgramInstance.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>

using namespace quillabrae;
using fuzz::require;

namespace {

namespace HandOver = platform::HandOver;

/// A running program, which notes what it is asked for.
class Program {
public:
    Program() {
        QObject::connect(
            &m_instance, &platform::ProgramInstance::asked,
            [this](const platform::StartRequest& request) { m_asked.append(request); });
        require(m_instance.start({}) == platform::ProgramInstance::Role::first);
    }

    QByteArray socket() const {
        return QFile::encodeName(m_folder.filePath(m_key + QStringLiteral(".socket")));
    }
    QList<platform::StartRequest> taken() { return std::exchange(m_asked, {}); }

private:
    const QString m_key = QStringLiteral("fuzzed");
    QTemporaryDir m_folder;
    platform::ProgramInstance m_instance{{m_folder.path(), m_key}};
    QList<platform::StartRequest> m_asked;
};

/// One that sends to it.
class Sender {
public:
    explicit Sender(const QByteArray& socket) : m_file(::socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        require(socket.size() < static_cast<qsizetype>(sizeof(address.sun_path)));
        std::memcpy(address.sun_path, socket.constData(), static_cast<std::size_t>(socket.size()));
        require(::connect(m_file, reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
                0);
    }
    ~Sender() { ::close(m_file); }
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    /// The other end may have had enough already.
    void send(const QByteArray& bytes) const {
        ::send(m_file, bytes.constData(), static_cast<std::size_t>(bytes.size()),
               MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    /// All that is said until the other end has closed.
    QByteArray answer() const {
        QByteArray all;
        for (int round = 0; round < 1000; ++round) {
            QCoreApplication::processEvents();
            pollfd state{m_file, POLLIN, 0};
            if (::poll(&state, 1, 0) == 0) continue;
            std::array<char, 64> bytes{};
            const ssize_t size = ::recv(m_file, bytes.data(), bytes.size(), MSG_DONTWAIT);
            // Closed with bytes unread, it is "reset".
            if (size <= 0) return all;
            all.append(bytes.data(), size);
        }
        require(false);
        return {};
    }

private:
    int m_file;
};

void settle() {
    constexpr int rounds = 4;
    for (int round = 0; round < rounds; ++round) QCoreApplication::processEvents();
}

void checkVisit(Program& program, const QByteArray& bytes, qsizetype piece) {
    const HandOver::Reading reading = HandOver::read(bytes);
    {
        const Sender sender(program.socket());
        for (qsizetype at = 0; at < bytes.size(); at += piece) {
            sender.send(bytes.mid(at, piece));
            QCoreApplication::processEvents();
        }
        const bool isTaken = reading.progress == HandOver::Progress::complete;
        if (reading.progress != HandOver::Progress::incomplete)
            require(sender.answer() == (isTaken ? HandOver::answer : ""));
    }
    settle();
    const QList<platform::StartRequest> taken = program.taken();
    if (reading.progress == HandOver::Progress::complete)
        require(taken == QList{reading.request});
    else
        require(taken.isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int argumentCount = 1;
    static char name[] = "fuzz-handover";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
    static Program program;
    if (size == 0) return 0;
    const QByteArray bytes = fuzz::bytesOf(data + 1, size - 1);
    const qsizetype whole = std::max<qsizetype>(bytes.size(), 1);
    checkVisit(program, bytes, data[0] == 0 ? whole : qsizetype{data[0]});
    return 0;
}
