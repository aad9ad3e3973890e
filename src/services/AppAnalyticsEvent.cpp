// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppAnalyticsEvent.h"

#include "model/Vocabulary.h"

namespace quillabrae::services {
namespace {

struct Row {
    AppAnalyticsEvent value;
    const char* name;
};

constexpr Row rows[] = {
    {AppAnalyticsEvent::firstLaunch, "app_first_launch"},
    {AppAnalyticsEvent::launch, "app_launch"},
    {AppAnalyticsEvent::updated, "app_updated"},
    {AppAnalyticsEvent::projectCreated, "project_created"},
    {AppAnalyticsEvent::projectOpened, "project_opened"},
    {AppAnalyticsEvent::projectSaved, "project_saved"},
    {AppAnalyticsEvent::imageExported, "image_exported"},
    {AppAnalyticsEvent::generativeFillCompleted, "generative_fill_completed"},
};

} // namespace

QString eventName(AppAnalyticsEvent event) {
    return QLatin1StringView(model::vocabularyRow(std::span<const Row>(rows), event).name);
}

} // namespace quillabrae::services
