// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"

#include <QDialog>

namespace quillabrae::shell {

class NumberField;

/// Asks for the size and resolution of a new project.
class NewProjectDialog final : public QDialog {
    Q_OBJECT

public:
    explicit NewProjectDialog(QSizeF size, QWidget* parent = nullptr);

    /// What the fields hold, each rounded to a whole number of at least 1.
    NewProjectDialogResult answer() const;

private:
    NumberField* m_width;
    NumberField* m_height;
    NumberField* m_resolution;
};

} // namespace quillabrae::shell
