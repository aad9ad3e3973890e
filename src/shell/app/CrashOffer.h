// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace quillabrae::platform {
class LastCrashReport;
}

namespace quillabrae::shell {

struct Alert;

/// Offers the report of a crash to the user, who may read it in the feedback form, add to it and
/// send it, or give it up. It is never sent otherwise.
class CrashOffer final {
public:
    struct Hooks {
        /// The index of the answer, as `runAlert`.
        std::function<int(const Alert&)> ask;
        std::function<void()> showFeedback;
    };

    /// `crash` outlives the offer.
    CrashOffer(platform::LastCrashReport& crash, Hooks hooks);

    /// Asks, where there is a report.
    void offer();
    /// What the feedback form is to hold at first: room for the user's words and the report, once
    /// the user wants to see it.
    QString draft() const;
    /// The form's text was sent; the report with it, where it was shown.
    void feedbackSent();

private:
    platform::LastCrashReport& m_crash;
    Hooks m_hooks;
    bool m_isWanted = false;
};

} // namespace quillabrae::shell
