// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/BrowserAuthentication.h"

#include <QPointer>
#include <QTimer>

#include <utility>

namespace quillabrae::services {

class BrowserAuthentication::Session final : public WebAuthenticationSession {
public:
    Session(BrowserAuthentication& home, std::chrono::milliseconds patience, Completion completion)
        : m_home(&home), m_completion(std::move(completion)) {
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this] { end(WebAuthenticationError::timedOut); });
        m_timer.start(patience);
        home.m_waiting = this;
    }
    ~Session() override { leave(); }

    void cancel() override { end(WebAuthenticationError::cancelled); }

    /// What it calls may destroy this.
    void end(const WebAuthenticationOutcome& outcome) {
        leave();
        if (const Completion completion = std::exchange(m_completion, nullptr)) completion(outcome);
    }

private:
    void leave() {
        m_timer.stop();
        if (m_home && m_home->m_waiting == this) m_home->m_waiting = nullptr;
    }

    QPointer<BrowserAuthentication> m_home;
    Completion m_completion;
    QTimer m_timer;
};

BrowserAuthentication::BrowserAuthentication(platform::Browser& browser,
                                             std::chrono::milliseconds patience)
    : m_browser(browser), m_patience(patience) {}

BrowserAuthentication::~BrowserAuthentication() = default;

std::unique_ptr<WebAuthenticationSession> BrowserAuthentication::start(const QUrl& page,
                                                                       Completion completion) {
    if (!m_browser.open(page)) return nullptr;
    return std::make_unique<Session>(*this, m_patience, std::move(completion));
}

bool BrowserAuthentication::takeLink(const QUrl& link) {
    if (m_waiting == nullptr) return false;
    m_waiting->end(link);
    return true;
}

} // namespace quillabrae::services
