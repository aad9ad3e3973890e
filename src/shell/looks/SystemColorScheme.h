// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/DesktopSetting.h"
#include "shell/looks/Style.h"

#include <QObject>

namespace quillabrae::platform {
class Preferences;
}

namespace quillabrae::shell {

/// Keeps the program light or dark as the desktop is. Starts with what the desktop's palette says,
/// or what it said in the last run, and asks the desktop's settings service when there is time.
class SystemColorScheme final : public QObject {
    Q_OBJECT

public:
    /// Applies the scheme to start with.
    explicit SystemColorScheme(platform::Preferences& preferences);

    /// Asks the desktop and follows it from then on. Does not wait; without a settings service the
    /// scheme stays as it is.
    void followSystem() { m_setting.follow(); }

private:
    void use(ColorScheme scheme);
    void take(const QVariant& value);

    platform::Preferences& m_preferences;
    DesktopSetting m_setting;
    ColorScheme m_scheme;
};

} // namespace quillabrae::shell
