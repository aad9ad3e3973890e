// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/CrashOffer.h"

#include "platform/LastCrashReport.h"
#include "shell/dialogs/Alert.h"

#include <QCoreApplication>

#include <utility>

namespace quillabrae::shell {
namespace {

/// The context of this file's texts, for translators.
struct CrashOfferTexts {
    Q_DECLARE_TR_FUNCTIONS(CrashOfferTexts)
};

Alert question() {
    return {CrashOfferTexts::tr("Quillabrae ended unexpectedly last time"),
            CrashOfferTexts::tr(
                "It left a short report: its version and where in the program it was, no "
                "file names and nothing of your work. You can read it in the feedback "
                "form before you send it."),
            {CrashOfferTexts::tr("Show Report"), CrashOfferTexts::tr("Don't Report")}};
}

} // namespace

CrashOffer::CrashOffer(platform::LastCrashReport& crash, Hooks hooks)
    : m_crash(crash), m_hooks(std::move(hooks)) {}

void CrashOffer::offer() {
    if (!m_crash.text()) return;
    m_isWanted = m_hooks.ask(question()) == 0;
    if (m_isWanted)
        m_hooks.showFeedback();
    else
        m_crash.forget();
}

QString CrashOffer::draft() const {
    const auto report = m_crash.text();
    if (!m_isWanted || !report) return {};
    return QStringLiteral("\n\n") + *report;
}

void CrashOffer::feedbackSent() {
    if (!std::exchange(m_isWanted, false)) return;
    m_crash.forget();
}

} // namespace quillabrae::shell
