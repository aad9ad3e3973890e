// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/DesktopSetting.h"

#include <QObject>

namespace quillabrae::shell {

/// Whether the user has told the desktop that things should not move.
class SystemMotion final : public QObject {
    Q_OBJECT

public:
    SystemMotion();

    /// Asks the desktop and follows it from then on. Does not wait; without an answer things move.
    void followSystem();
    bool isReduced() const { return m_prefersLess || !m_animates; }

Q_SIGNALS:
    void changed(bool isReduced);

private:
    void set(bool& part, bool value);

    /// Two desktops' ways to say it; either will do.
    DesktopSetting m_preference;
    DesktopSetting m_animations;
    bool m_prefersLess = false;
    bool m_animates = true;
};

} // namespace quillabrae::shell
