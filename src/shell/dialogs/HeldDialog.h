// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QPointer>

namespace quillabrae::shell {

/// A dialog of a window that may go while the dialog is run, and takes it along then. What is left
/// of it is deleted in the end.
template <typename Dialog>
class HeldDialog {
public:
    explicit HeldDialog(Dialog* dialog) : m_dialog(dialog) {}
    ~HeldDialog() { delete m_dialog; }
    HeldDialog(const HeldDialog&) = delete;
    HeldDialog& operator=(const HeldDialog&) = delete;

    Dialog* operator->() const { return m_dialog; }
    Dialog* get() const { return m_dialog; }

    /// Until it is answered or gone. True when it was accepted and is still there.
    bool isAccepted() { return m_dialog->exec() == QDialog::Accepted && m_dialog; }

private:
    QPointer<Dialog> m_dialog;
};

} // namespace quillabrae::shell
