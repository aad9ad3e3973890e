// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileChooserPortal.h"

#include <QDialog>
#include <QString>

namespace quillabrae::shell {

/// The desktop's own file dialog in the place of one of ours: it is run, holds back the program's
/// other windows and comes to an end as a dialog does, but shows nothing itself.
class DesktopFileDialog final : public QDialog {
    Q_OBJECT

public:
    enum class Outcome {
        chosen,
        cancelled,
        /// The desktop has no such dialog, or lost it: ask with our own.
        unavailable
    };

    struct Answer {
        Outcome outcome = Outcome::unavailable;
        /// What was chosen: an absolute path, and the id of an option.
        QString path{};
        QString option{};
    };

    /// Asks for `question`, whose window is that of `parent`, and waits for the answer while the
    /// program goes on.
    static Answer ask(platform::FileChooserQuestion question, QWidget* parent);

private:
    explicit DesktopFileDialog(QWidget* parent);
    void finish(Answer answer);

    platform::FileChooserPortal m_portal;
    Answer m_answer;
};

} // namespace quillabrae::shell
