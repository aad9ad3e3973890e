// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace quillabrae::platform {

/// What somebody who starts the program wants of it, whichever way it arrives: as arguments, from a
/// second start, or over the bus. Holds only what has been checked.
struct StartRequest {
    /// Absolute file URLs.
    QList<QUrl> files{};
    /// The program's own links, but for those that name an action.
    QList<QUrl> links{};
    /// The name of an action; empty for none. Whether there is such an action is not known here.
    QString action{};
    /// What the desktop gave the asker so that a window may come to the front; often empty.
    QByteArray activationToken{};

    /// Whether there is more to do than to show the program.
    bool asksForMore() const { return !files.isEmpty() || !links.isEmpty() || !action.isEmpty(); }
    bool operator==(const StartRequest&) const = default;
};

/// Of files, links and actions together.
constexpr qsizetype maximumUrlCount = 100'000;
constexpr qsizetype maximumActionLength = 64;
constexpr qsizetype maximumTokenLength = 512;

/// Sorts URLs from anywhere. `quillabrae://action/NAME` is an action, the last of several; any
/// other URL that is neither an absolute file nor a link is left out.
StartRequest sortedRequest(const QList<QUrl>& urls);

/// The URL that `sortedRequest` takes for this action.
QUrl actionUrl(const QString& action);

/// The token, or nothing when it is not short printable ASCII.
QByteArray checkedToken(const QByteArray& token);

/// The URLs that program arguments name: URLs of files and program links as they are, everything
/// else as a path, a relative one against `workingFolder`.
QList<QUrl> urlsFromArguments(const QStringList& arguments, const QString& workingFolder);

/// The token that the desktop started this program with; read it before there is a QGuiApplication,
/// which may take it away.
QByteArray activationTokenOfThisStart();

/// Lets windows that are brought to the front while this lives use a request's token; then the
/// start that the desktop gave it for is over.
class ActivationLeave final {
public:
    explicit ActivationLeave(const QByteArray& token);
    ~ActivationLeave();
    ActivationLeave(const ActivationLeave&) = delete;
    ActivationLeave& operator=(const ActivationLeave&) = delete;

private:
    QByteArray m_token;
};

} // namespace quillabrae::platform

Q_DECLARE_METATYPE(quillabrae::platform::StartRequest)
