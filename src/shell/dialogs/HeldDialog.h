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

    /// Runs it until it is answered or gone, which is the same as rejected. What it was done with.
    int run() { return m_dialog->exec(); }
    /// The same; true when it was accepted and is still there.
    bool isAccepted() { return run() == QDialog::Accepted && m_dialog; }

private:
    QPointer<Dialog> m_dialog;
};

} // namespace quillabrae::shell
