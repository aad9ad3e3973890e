// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/OpenAIImageEditService.h"
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"
#include "support/ScriptedHttpClient.h"

#include <QCoreApplication>

namespace quillabrae::replay {

/// The image-edit service and the user's key for it, both in the hands of the script.
struct ScriptedFillService {
    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    tests::ScriptedHttpClient http;
    effects::OpenAIImageEditService imageEdit{http, QUrl(QStringLiteral("https://example.org"))};
    /// What the last fill came to: "waiting", "applied" or why it failed.
    QString lastEnd;

    /// Has the secret store answer, which it does from the event loop.
    static void giveKey() { QCoreApplication::processEvents(); }
};

} // namespace quillabrae::replay
