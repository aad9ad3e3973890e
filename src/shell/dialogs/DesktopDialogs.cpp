// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DesktopDialogs.h"

#include "shell/dialogs/NewProjectDialog.h"

namespace quillabrae::shell {

std::optional<NewProjectDialogResult> DesktopDialogs::requestNewProject(QSizeF size,
                                                                        QWidget* parent) {
    NewProjectDialog dialog(size, parent);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.answer();
}

} // namespace quillabrae::shell
