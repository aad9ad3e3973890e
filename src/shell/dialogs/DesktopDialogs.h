// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"

namespace quillabrae::shell {

/// The dialogs on the screen.
class DesktopDialogs final : public Dialogs {
public:
    std::optional<NewProjectDialogResult> requestNewProject(QSizeF size, QWidget* parent) override;
};

} // namespace quillabrae::shell
