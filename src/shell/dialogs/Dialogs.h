// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/ResizeFields.h"
#include "store/AlignObjectAction.h"
#include "store/ColorRemovalSettings.h"
#include "store/DialogResults.h"

#include <QSizeF>

#include <functional>
#include <optional>

class QWidget;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

struct NewProjectDialogResult {
    double width = 1.0;
    double height = 1.0;
    double resolutionDPI = 1.0;

    friend bool operator==(const NewProjectDialogResult&, const NewProjectDialogResult&) = default;
};

/// Shows what a choice in a dialog would do.
using AlignObjectPreview = std::function<void(store::AlignObjectAction)>;
using ColorRemovalPreview = std::function<void(const store::ColorRemovalSettings&)>;

/// The dialogs that commands run. Each call blocks until the user has answered; nothing for a
/// dialog that was cancelled or closed.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    /// `size` is what the dialog starts with, in pixels.
    virtual std::optional<NewProjectDialogResult> requestNewProject(QSizeF size,
                                                                    QWidget* parent) = 0;
    virtual std::optional<ResizeDialogResponse> requestResize(const ResizeDialogRequest& request,
                                                              QWidget* parent) = 0;
    virtual std::optional<store::RotateZoomDialogResult> requestRotateZoom(QWidget* parent) = 0;
    virtual std::optional<store::LayerPropertiesDialogResult> requestLayerProperties(
        const store::LayerPropertiesDialogResult& layer, QWidget* parent) = 0;
    /// Whether what was shown last is to stay.
    virtual bool requestAlignObject(const AlignObjectPreview& preview, QWidget* parent) = 0;
    /// `settings` hold the colours that the tools paint with.
    virtual std::optional<store::ColorRemovalSettings> requestColorRemoval(
        const model::PaintAppSettings& settings, const ColorRemovalPreview& preview,
        QWidget* parent) = 0;
    /// Shows the dialog that fills selections, and returns at once: it stays while the program goes
    /// on. There is one at a time.
    virtual void showGenerativeFill(store::ProjectStore& store, QWidget* parent) = 0;
    /// Shows the dialog that sends feedback, and returns at once; `parent` takes no input
    /// meanwhile.
    virtual void showFeedback(QWidget* parent) = 0;
};

} // namespace quillabrae::shell
