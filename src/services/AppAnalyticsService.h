// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/AppAnalyticsDefaults.h"
#include "services/AppAnalyticsEvent.h"
#include "services/AppAnalyticsRequest.h"
#include "services/AppAnalyticsTransport.h"
#include "services/ProgramIdentity.h"

#include <QThread>

#include <functional>
#include <optional>

namespace quillabrae::services {

/// Reports anonymous usage events, on a thread of its own that is begun with the first event.
///
/// Nothing is sent, and nothing begun, without a configuration or the user's leave. There is one
/// try for each event; what fails is dropped in silence. No call waits for the network, the
/// destructor included: it gives up what is under way.
class AppAnalyticsService final : public UsageEvents {
public:
    /// `preferences` outlives this. `makeTransport` is called on the service's thread.
    AppAnalyticsService(std::optional<AppAnalyticsConfiguration> configuration,
                        platform::Preferences& preferences, ProgramIdentity identity,
                        AppAnalyticsTransportFactory makeTransport = makeNetworkAnalyticsTransport);
    ~AppAnalyticsService() override;
    AppAnalyticsService(const AppAnalyticsService&) = delete;
    AppAnalyticsService& operator=(const AppAnalyticsService&) = delete;

    bool isEnabled() const;
    void track(AppAnalyticsEvent event, const AnalyticsData& data = {}) override;
    /// Reports this start of the program, and before that that it is the first one, or the first
    /// of this version, until the server has taken that once.
    void trackLaunch();

private:
    class Executor;

    void run(const std::function<void(Executor&)>& task);

    std::optional<AppAnalyticsConfiguration> m_configuration;
    ProgramIdentity m_identity;
    AppAnalyticsTransportFactory m_makeTransport;
    AppAnalyticsDefaults m_defaults;
    QThread m_thread;
    /// Lives on that thread, and goes with it.
    Executor* m_executor = nullptr;
};

} // namespace quillabrae::services
