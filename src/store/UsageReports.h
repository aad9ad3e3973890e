// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/AppAnalyticsEvent.h"
#include "store/StoreEnvironment.h"

namespace quillabrae::store {

/// Where pictures come from that users copied elsewhere.
inline const QString clipboardSource = QStringLiteral("clipboard");

inline void report(const StoreEnvironment& environment, services::AppAnalyticsEvent event,
                   const services::AnalyticsData& data = {}) {
    if (environment.usageEvents) environment.usageEvents->track(event, data);
}

} // namespace quillabrae::store
