// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace quillabrae::platform {

/// Finds out whether the name of a host leads anywhere, on a thread that nobody waits for: where
/// the system's name server is silent that takes half a minute, which the end of the program would
/// otherwise stand still for. Destroying it leaves that thread to itself.
class NameLookup final : public QObject {
    Q_OBJECT

public:
    explicit NameLookup(const QString& host);
    ~NameLookup() override;

    enum class Outcome { found, unknown };
    bool isFinished() const { return m_isFinished; }

Q_SIGNALS:
    /// Once, from the event loop of the thread that made this.
    void finished(quillabrae::platform::NameLookup::Outcome outcome);

private:
    struct Meeting;

    void finish(Outcome outcome);

    std::shared_ptr<Meeting> m_meeting;
    bool m_isFinished = false;
};

/// Whether a host is given by its name and not by its address.
bool isName(const QString& host);

} // namespace quillabrae::platform
