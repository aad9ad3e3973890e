// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DesktopDialogs.h"

#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/ColorRemovalDialog.h"
#include "shell/dialogs/FeedbackDialogView.h"
#include "shell/dialogs/GenerativeFillDialog.h"
#include "shell/dialogs/HeldDialog.h"
#include "shell/dialogs/LayerPropertiesDialog.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/dialogs/RotateZoomDialog.h"

#include <utility>

namespace quillabrae::shell {
namespace {

/// What a dialog holds when the user has accepted it.
template <typename Dialog>
auto answered(HeldDialog<Dialog> dialog) -> std::optional<decltype(dialog->answer())> {
    if (!dialog.isAccepted()) return std::nullopt;
    return dialog->answer();
}

/// A dialog that stays until it is closed.
void bringUp(QDialog& dialog) {
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

} // namespace

DesktopDialogs::DesktopDialogs(FeedbackDialogView::Environment feedback)
    : m_feedbackEnvironment(std::move(feedback)) {}

std::optional<NewProjectDialogResult> DesktopDialogs::requestNewProject(QSizeF size,
                                                                        QWidget* parent) {
    return answered(HeldDialog(new NewProjectDialog(size, parent)));
}

std::optional<ResizeDialogResponse> DesktopDialogs::requestResize(
    const ResizeDialogRequest& request, QWidget* parent) {
    return answered(HeldDialog(new ResizeDialog(request, parent)));
}

std::optional<store::RotateZoomDialogResult> DesktopDialogs::requestRotateZoom(QWidget* parent) {
    return answered(HeldDialog(new RotateZoomDialog(parent)));
}

std::optional<store::LayerPropertiesDialogResult> DesktopDialogs::requestLayerProperties(
    const store::LayerPropertiesDialogResult& layer, QWidget* parent) {
    return answered(HeldDialog(new LayerPropertiesDialog(layer, parent)));
}

bool DesktopDialogs::requestAlignObject(const AlignObjectPreview& preview, QWidget* parent) {
    return HeldDialog(new AlignObjectDialog(preview, parent)).isAccepted();
}

std::optional<store::ColorRemovalSettings> DesktopDialogs::requestColorRemoval(
    const model::PaintAppSettings& settings, const ColorRemovalPreview& preview, QWidget* parent) {
    return answered(HeldDialog(new ColorRemovalDialog(settings, preview, parent)));
}

void DesktopDialogs::showGenerativeFill(store::ProjectStore& store, QWidget* parent) {
    if (!m_generativeFill) m_generativeFill = new GenerativeFillDialog(store, parent);
    bringUp(*m_generativeFill);
}

void DesktopDialogs::showFeedback(QWidget* parent) {
    if (!m_feedback) {
        m_feedback = new FeedbackDialogView(m_feedbackEnvironment, parent);
        m_feedback->setWindowModality(Qt::WindowModal);
    }
    bringUp(*m_feedback);
}

} // namespace quillabrae::shell
