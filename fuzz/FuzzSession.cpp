// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a recovery session, which can be restored, written and read again as the same, or
// one JsonError.
#include "FuzzInput.h"
#include "persistence/RecoverySessionCoding.h"

using namespace quillabrae;

namespace {

persistence::PaintAutosaveSession decoded(const QByteArray& json) {
    persistence::PaintAutosaveSession session;
    session.savedAt = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
    model::JsonReader reader(json);
    model::decodeOnto(session, reader);
    return session;
}

void restore(const persistence::PaintAutosaveSession& session) {
    for (const model::PaintProject& project : session.projects) {
        const auto history = session.histories.constFind(project.id);
        std::optional<model::PaintHistoryState> kept;
        if (history != session.histories.constEnd())
            kept = persistence::trimmedForRecovery(*history, 10);
        const auto state = persistence::normalizedRecoveredHistory(project, kept);
        fuzz::require(state.selectedIndex >= 0 && state.selectedIndex < std::ssize(state.entries));
    }
    const auto histories = persistence::recoveryHistories(session.histories, session.projects,
                                                          session.savedProjectFingerprints, 5, 500);
    fuzz::require(histories.size() <= std::ssize(session.projects));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    persistence::PaintAutosaveSession session;
    try {
        session = decoded({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    } catch (const model::JsonError&) {
        return 0;
    }
    restore(session);
    const QByteArray json = model::encodedJson(session);
    fuzz::require(model::encodedJson(decoded(json)) == json);
    return 0;
}
