// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StartRequest.h"

#include "platform/LocalFile.h"
#include "platform/ProgramLink.h"
#include "platform/StartupNotification.h"

#include <QDir>

#include <algorithm>
#include <array>

namespace quillabrae::platform {
namespace {

constexpr QLatin1StringView actionHost("action");

/// The names under which desktops pass a token: to Wayland programs and to X11 programs. The window
/// system's part of the program reads the one that it knows.
constexpr std::array tokenVariables{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

bool isActionName(QStringView name) {
    const auto isLetter = [](QChar letter) {
        return (letter >= u'a' && letter <= u'z') || letter == u'-';
    };
    return !name.isEmpty() && name.size() <= maximumActionLength &&
           std::ranges::all_of(name, isLetter);
}

} // namespace

StartRequest sortedRequest(const QList<QUrl>& urls) {
    StartRequest request;
    for (const QUrl& url : urls) {
        if (const auto file = fileOfThisMachine(url)) {
            request.files.append(*file);
        } else if (isProgramLink(url) && url.host() == actionHost) {
            const QString name = url.path().mid(1);
            if (isActionName(name)) request.action = name;
        } else if (isProgramLink(url)) {
            request.links.append(url);
        }
    }
    return request;
}

QUrl actionUrl(const QString& action) {
    QUrl url;
    url.setScheme(programLinkScheme);
    url.setHost(actionHost);
    url.setPath(u'/' + action);
    return url;
}

QByteArray checkedToken(const QByteArray& token) {
    const bool isShort = token.size() <= maximumTokenLength;
    const auto isPrintable = [](char byte) { return byte > ' ' && byte <= '~'; };
    return isShort && std::ranges::all_of(token, isPrintable) ? token : QByteArray();
}

QList<QUrl> urlsFromArguments(const QStringList& arguments, const QString& workingFolder) {
    QList<QUrl> urls;
    for (const QString& argument : arguments) {
        if (argument.isEmpty()) continue;
        if (isMeantAsProgramLink(argument)) {
            if (argument.size() <= maximumProgramLink)
                urls.append(QUrl(argument, QUrl::StrictMode));
            continue;
        }
        if (argument.startsWith(QLatin1StringView("file:"))) {
            urls.append(QUrl(argument));
            continue;
        }
        const QString path = QDir(workingFolder).absoluteFilePath(argument);
        urls.append(QUrl::fromLocalFile(QDir::cleanPath(path)));
    }
    return urls;
}

QByteArray activationTokenOfThisStart() {
    for (const char* variable : tokenVariables) {
        if (const QByteArray token = checkedToken(qgetenv(variable)); !token.isEmpty())
            return token;
    }
    return {};
}

ActivationLeave::ActivationLeave(const QByteArray& token) : m_token(token) {
    if (token.isEmpty()) return;
    for (const char* variable : tokenVariables) qputenv(variable, token);
}

ActivationLeave::~ActivationLeave() {
    for (const char* variable : tokenVariables) qunsetenv(variable);
    endStartupNotification(m_token);
}

} // namespace quillabrae::platform
