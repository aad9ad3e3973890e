// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/WorkRunner.h"

#include <QDialog>

class QPushButton;

namespace quillabrae::shell {

class SlimBar;

/// What is being done, how far it is, and Cancel. Application modal; it neither starts the work nor
/// goes away by itself: Escape, the close button and Cancel ask the work to stop.
class ProgressDialog final : public QDialog {
    Q_OBJECT

public:
    /// `control` is looked at while the dialog is there.
    ProgressDialog(const QString& title, platform::WorkControl& control, QWidget* parent);

    void reject() override;

private:
    void showFraction();

    platform::WorkControl& m_control;
    SlimBar* m_bar;
    QPushButton* m_cancel;
};

} // namespace quillabrae::shell
