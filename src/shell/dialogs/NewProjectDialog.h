// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"

#include <QDialog>
#include <QString>

class QLabel;
class QPushButton;

namespace quillabrae::shell {

class NumberField;

/// What a canvas of that size takes, or why there can be none: a sentence for the dialog.
struct CanvasNeed {
    QString text;
    bool isPossible = false;

    static CanvasNeed of(double width, double height);
};

/// Asks for the size and resolution of a new project, and tells what a layer of it takes. A size
/// that no picture can have is refused in words.
class NewProjectDialog final : public QDialog {
    Q_OBJECT

public:
    explicit NewProjectDialog(QSizeF size, QWidget* parent = nullptr);

    /// What the fields hold, each rounded to a whole number of at least 1.
    NewProjectDialogResult answer() const;

private:
    void showNeed();

    QLabel* m_need;
    QPushButton* m_create = nullptr;
    NumberField* m_width;
    NumberField* m_height;
    NumberField* m_resolution;
};

} // namespace quillabrae::shell
