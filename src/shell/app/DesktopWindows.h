// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/app/WindowFactory.h"

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class CommandActions;

/// The program's real windows, centred on the screen.
class DesktopWindows final : public WindowFactory {
public:
    explicit DesktopWindows(store::ProjectStore& store);
    ~DesktopWindows() override;

    std::unique_ptr<QWidget> makeWindow(WindowRole role, WindowCoordinator& coordinator) override;

private:
    std::unique_ptr<QWidget> makeContent(WindowRole role, WindowCoordinator& coordinator);
    const CommandActions& actions(WindowCoordinator& coordinator);

    store::ProjectStore& m_store;
    std::unique_ptr<CommandActions> m_actions;
};

} // namespace quillabrae::shell
