// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/app/WindowFactory.h"
#include "shell/settings/SettingsTable.h"

namespace quillabrae::services {
class AppUpdateService;
}

namespace quillabrae::shell {

class CommandActions;
class SystemMotion;

/// The program's real windows, centred on the screen.
class DesktopWindows final : public WindowFactory {
public:
    /// `motion` and `updates` outlive the windows.
    DesktopWindows(SettingsContext context, const SystemMotion& motion,
                   services::AppUpdateService& updates);
    ~DesktopWindows() override;

    std::unique_ptr<QWidget> makeWindow(WindowRole role, WindowCoordinator& coordinator) override;

private:
    std::unique_ptr<QWidget> makeContent(WindowRole role, WindowCoordinator& coordinator);
    std::unique_ptr<QWidget> makeEditor(WindowCoordinator& coordinator);
    std::unique_ptr<QWidget> makePluginLibrary(WindowCoordinator& coordinator);
    std::unique_ptr<QWidget> makeSettings(WindowCoordinator& coordinator);
    const CommandActions& actions(WindowCoordinator& coordinator);

    SettingsContext m_context;
    store::ProjectStore& m_store;
    const SystemMotion& m_motion;
    services::AppUpdateService& m_updates;
    std::unique_ptr<CommandActions> m_actions;
};

} // namespace quillabrae::shell
