// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Browser.h"
#include "services/WebAuthenticationSession.h"

#include <QObject>

#include <chrono>

namespace quillabrae::services {

/// Sign-in in the user's own browser. The program link at the end of the visit starts the program
/// once more, which hands it to the running one and so to `takeLink`.
class BrowserAuthentication final : public QObject, public WebAuthentication {
    Q_OBJECT

public:
    /// `browser` outlives this; a visit ends as timed out after `patience`.
    explicit BrowserAuthentication(platform::Browser& browser,
                                   std::chrono::milliseconds patience = std::chrono::minutes(10));
    ~BrowserAuthentication() override;

    std::unique_ptr<WebAuthenticationSession> start(const QUrl& page,
                                                    Completion completion) override;

    /// Ends the visit that waits for a link. Whether there is one; a link that nobody waits for is
    /// forgotten.
    bool takeLink(const QUrl& link);

private:
    class Session;

    platform::Browser& m_browser;
    std::chrono::milliseconds m_patience;
    /// The visit that was begun last, while it lasts.
    Session* m_waiting = nullptr;
};

} // namespace quillabrae::services
