// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/app/WindowRole.h"

#include <memory>

class QWidget;

namespace quillabrae::shell {

class WindowCoordinator;

/// Makes the program's windows, hidden and with their content.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;
    /// The content calls `coordinator`, which outlives the window.
    virtual std::unique_ptr<QWidget> makeWindow(WindowRole role,
                                                WindowCoordinator& coordinator) = 0;
};

} // namespace quillabrae::shell
