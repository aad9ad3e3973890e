// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileLock.h"

#include <QList>
#include <QLocalServer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <chrono>

namespace quillabrae::platform {

/// The files that program arguments name: paths, relative ones against `workingFolder`, and file
/// URLs. Program links are none.
QList<QUrl> filesFromArguments(const QStringList& arguments, const QString& workingFolder);

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

/// Lets one program run at a time: a second start hands its files and program links to the first
/// and ends.
class ProgramInstance final : public QObject {
    Q_OBJECT

public:
    enum class Role {
        /// This is the running program; it hears of later starts through the signals.
        first,
        /// Another program runs and has taken the URLs.
        second,
        /// Another program runs but did not take them in time.
        unanswered
    };

    explicit ProgramInstance(MeetingPlace place, QObject* parent = nullptr);
    ~ProgramInstance() override;

    /// Becomes the running program or hands it `urls`: files and program links. Waits no longer
    /// than `patience`, and only for a program that runs and is busy.
    Role start(const QList<QUrl>& urls,
               std::chrono::milliseconds patience = std::chrono::seconds(10));

Q_SIGNALS:
    /// A later start named these files, at least one, each an absolute file URL.
    void filesOpened(const QList<QUrl>& files);
    /// A later start brought these links, at least one.
    void linksOpened(const QList<QUrl>& links);
    /// A later start named neither.
    void reopened();

private:
    QString pathOf(QStringView suffix) const;
    void listen();
    void greet();

    MeetingPlace m_place;
    FileLock m_lock;
    QLocalServer m_server;
};

} // namespace quillabrae::platform
