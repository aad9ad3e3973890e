// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>

namespace quillabrae::services {

/// What users do that is counted.
enum class AppAnalyticsEvent {
    firstLaunch,
    launch,
    updated,
    projectCreated,
    projectOpened,
    projectSaved,
    imageExported,
    generativeFillCompleted
};

/// The name that the event has on the server, such as "project_saved".
QString eventName(AppAnalyticsEvent event);

/// What an event tells beside its name: words from closed lists, and nothing of the user's, such as
/// names of files.
using AnalyticsData = QMap<QString, QString>;

/// Where the program says what happened.
class UsageEvents {
public:
    virtual ~UsageEvents() = default;
    /// Returns at once, whatever comes of it.
    virtual void track(AppAnalyticsEvent event, const AnalyticsData& data = {}) = 0;
};

} // namespace quillabrae::services
