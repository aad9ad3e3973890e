// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/DesktopSetting.h"
#include "shell/looks/Style.h"

#include <QObject>

namespace quillabrae::platform {
class Preferences;
}

namespace quillabrae::shell {

/// Keeps the program light or dark, and in high contrast or not, as the desktop is. Starts with
/// what the desktop's palette says, or what the desktop said in the last run, and asks the
/// desktop's settings service when there is time.
class SystemAppearance final : public QObject {
    Q_OBJECT

public:
    /// Applies what to start with.
    explicit SystemAppearance(platform::Preferences& preferences);

    /// Asks the desktop and follows it from then on. Does not wait; without a settings service
    /// everything stays as it is.
    void followSystem();

private:
    /// One switch that the desktop turns, and what it was in the last run.
    struct Switch {
        QString key;
        bool isOn = false;
    };

    void take(Switch& which, bool isOn);
    void apply() const;

    platform::Preferences& m_preferences;
    DesktopSetting m_schemeSetting;
    /// Two desktops' ways to say it; either will do.
    DesktopSetting m_contrastSetting;
    DesktopSetting m_highContrastSetting;
    Switch m_dark;
    Switch m_contrast;
    Switch m_highContrast;
};

} // namespace quillabrae::shell
