// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MemoryPreferences.h"
#include "platform/MemorySecretStore.h"
#include "platform/SecureRandom.h"
#include "services/BrowserAuthentication.h"
#include "services/QuillabraeAccountService.h"
#include "services/ScriptedBrowser.h"
#include "support/ScriptedHttpClient.h"

namespace quillabrae::shell {

/// An account with a world of its own around it.
struct TestAccount {
    tests::ScriptedHttpClient http;
    platform::MemorySecretStore secrets;
    platform::MemoryPreferences preferences;
    services::ScriptedBrowser browser;
    services::BrowserAuthentication web{browser};

    std::unique_ptr<services::QuillabraeAccountService> make(const QString& service) {
        return std::make_unique<services::QuillabraeAccountService>(
            services::QuillabraeAccountService::Environment{http, secrets, preferences, web,
                                                            platform::secureRandomData},
            services::WebService(QUrl(service)));
    }
    /// Of a build that has no service.
    std::unique_ptr<services::QuillabraeAccountService> none = make({});
};

} // namespace quillabrae::shell
