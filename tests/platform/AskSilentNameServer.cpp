// SPDX-License-Identifier: GPL-3.0-or-later
// Sends a request to a host whose name nobody answers for, and ends at once. The system's lookup is
// replaced by one that takes a minute.
#include "platform/NetworkHttpClient.h"

#include <QCoreApplication>
#include <QTimer>

#include <netdb.h>
#include <unistd.h>

extern "C" int getaddrinfo(const char*, const char*, const addrinfo*, addrinfo**) {
    ::sleep(60);
    return EAI_AGAIN;
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    quillabrae::platform::NetworkHttpClient client;
    const auto exchange =
        client.send({QUrl(QStringLiteral("https://silent.example/")), "GET", {}, {}}, {}, {});
    QTimer::singleShot(200, &application, [] { QCoreApplication::exit(7); });
    return QCoreApplication::exec();
}
