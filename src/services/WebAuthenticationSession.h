// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

#include <functional>
#include <memory>
#include <variant>

namespace quillabrae::services {

/// How a visit to a sign-in page ended without an address to come back to.
enum class WebAuthenticationError { cancelled, timedOut };

using WebAuthenticationOutcome = std::variant<QUrl, WebAuthenticationError>;

/// A visit under way. Destroying it ends it, without a word to those who wait.
class WebAuthenticationSession {
public:
    virtual ~WebAuthenticationSession() = default;
    /// The user gives up: the visit ends as cancelled.
    virtual void cancel() = 0;
};

/// Has the user sign in on a web page, outside of the program. Main thread only.
class WebAuthentication {
public:
    virtual ~WebAuthentication() = default;

    using Completion = std::function<void(WebAuthenticationOutcome)>;

    /// Shows a page whose visit ends at a program link, which is handed over as it came: anybody
    /// may have written it. `completion` is called once, from the event loop or from `cancel`, and
    /// may destroy the session. Null when the page cannot be shown.
    virtual std::unique_ptr<WebAuthenticationSession> start(const QUrl& page,
                                                            Completion completion) = 0;
};

} // namespace quillabrae::services
