// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileLock.h"
#include "platform/StartRequest.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

#include <chrono>

namespace quillabrae::platform {

/// Where the programs of one user, home and session meet.
struct MeetingPlace {
    /// A folder that only this user can enter; empty when there is none, and then no two programs
    /// find each other.
    QString folder;
    /// The same for all programs that are to be one.
    QString key;

    /// The place of this user and screen for the program that keeps its things in
    /// `applicationSupport`.
    static MeetingPlace standard(const QString& applicationSupport);
};

/// Lets one program run at a time: a second start hands what it was asked to the first and ends.
class ProgramInstance final : public QObject {
    Q_OBJECT

public:
    enum class Role {
        /// This is the running program; it hears of later starts through the signal.
        first,
        /// Another program runs and has taken the request.
        second,
        /// Another program runs but did not take the request in time.
        unanswered
    };

    explicit ProgramInstance(MeetingPlace place, QObject* parent = nullptr);
    ~ProgramInstance() override;

    /// Becomes the running program or hands `request` to it. Waits no longer than `patience`, and
    /// only for a program that runs and is busy.
    Role start(const StartRequest& request,
               std::chrono::milliseconds patience = std::chrono::seconds(10));

Q_SIGNALS:
    /// A later start asked for this, which may be no more than that the program shows itself.
    void asked(const quillabrae::platform::StartRequest& request);

private:
    QString pathOf(QStringView suffix) const;
    void listen();
    void greet();

    MeetingPlace m_place;
    FileLock m_lock;
    QLocalServer m_server;
};

} // namespace quillabrae::platform
