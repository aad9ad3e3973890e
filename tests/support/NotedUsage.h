// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/AppAnalyticsEvent.h"

#include <vector>

namespace quillabrae::tests {

/// Keeps the usage events that it is told of.
class NotedUsage final : public services::UsageEvents {
public:
    struct Event {
        services::AppAnalyticsEvent event;
        services::AnalyticsData data;

        friend bool operator==(const Event&, const Event&) = default;
    };

    void track(services::AppAnalyticsEvent event, const services::AnalyticsData& data) override {
        events.push_back({event, data});
    }

    std::vector<Event> events;
};

} // namespace quillabrae::tests
