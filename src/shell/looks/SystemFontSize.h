// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/DesktopSetting.h"

#include <QFont>
#include <QObject>

namespace quillabrae::shell {

/// Keeps the program's letters as large as the desktop wants them. A change of the whole font comes
/// from Qt, which knows the desktop's; the factor that the user has set for all texts does not.
class SystemFontSize final : public QObject {
    Q_OBJECT

public:
    SystemFontSize();

    /// Asks the desktop and follows it from then on. Does not wait; without an answer the letters
    /// stay as they are.
    void followSystem() { m_setting.follow(); }

    /// Makes the letters `factor` times as large as they were at the start, within reason.
    void use(double factor);

private:
    DesktopSetting m_setting;
    QFont m_plain;
    double m_factor = 1.0;
};

} // namespace quillabrae::shell
