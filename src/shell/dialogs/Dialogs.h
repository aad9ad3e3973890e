// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>

#include <optional>

class QWidget;

namespace quillabrae::shell {

struct NewProjectDialogResult {
    double width = 1.0;
    double height = 1.0;
    double resolutionDPI = 1.0;

    friend bool operator==(const NewProjectDialogResult&, const NewProjectDialogResult&) = default;
};

/// The dialogs that commands run. Each call blocks until the user has answered; nothing for a
/// dialog that was cancelled or closed.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    /// `size` is what the dialog starts with, in pixels.
    virtual std::optional<NewProjectDialogResult> requestNewProject(QSizeF size,
                                                                    QWidget* parent) = 0;
};

} // namespace quillabrae::shell
