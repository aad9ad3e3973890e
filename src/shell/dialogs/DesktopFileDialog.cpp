// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DesktopFileDialog.h"

#include "shell/dialogs/HeldDialog.h"

#include <QWindow>

#include <utility>

namespace quillabrae::shell {

using platform::FileChooserPortal;

DesktopFileDialog::DesktopFileDialog(QWidget* parent) : QDialog(parent) {
    setAttribute(Qt::WA_DontShowOnScreen);
    connect(&m_portal, &FileChooserPortal::chosen, this,
            [this](const QString& path, const QString& option) {
                finish({Outcome::chosen, path, option});
            });
    connect(&m_portal, &FileChooserPortal::cancelled, this,
            [this] { finish({.outcome = Outcome::cancelled}); });
    connect(&m_portal, &FileChooserPortal::unavailable, this, [this] { finish({}); });
}

DesktopFileDialog::Answer DesktopFileDialog::ask(platform::FileChooserQuestion question,
                                                 QWidget* parent) {
    HeldDialog dialog(new DesktopFileDialog(parent));
    // For screen readers, which are told of it all the same.
    dialog->setWindowTitle(question.title);
    if (parent != nullptr)
        question.parentWindow = platform::portalNameOf(parent->window()->windowHandle());
    dialog->m_portal.ask(question);
    // Whatever ends it but the desktop's answer is a way of saying no.
    return dialog.isAccepted() ? dialog->m_answer : Answer{.outcome = Outcome::cancelled};
}

void DesktopFileDialog::finish(Answer answer) {
    m_answer = std::move(answer);
    accept();
}

} // namespace quillabrae::shell
