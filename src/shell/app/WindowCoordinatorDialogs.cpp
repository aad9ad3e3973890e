// SPDX-License-Identifier: GPL-3.0-or-later
// The commands that ask for numbers or choices before they change the active project.
#include "shell/app/WindowCoordinator.h"
#include "shell/dialogs/Dialogs.h"
#include "store/ProjectStore.h"

#include <QTimer>

namespace quillabrae::shell {

void WindowCoordinator::showResizeDialog(ResizeDialogMode mode) {
    QTimer::singleShot(0, this, [this, mode] { presentResizeDialog(mode); });
}

void WindowCoordinator::presentResizeDialog(ResizeDialogMode mode) {
    store::ProjectStore& store = m_environment.store;
    const model::PaintProject* project = store.activeProject();
    if (project == nullptr) return;
    const auto response =
        m_environment.dialogs.requestResize({mode,
                                             {project->canvasWidth, project->canvasHeight},
                                             project->resolutionDPI,
                                             store.settings().lastCanvasResizeAnchor},
                                            dialogParent());
    if (!response) return;
    if (response->mode == ResizeDialogMode::image)
        store.resizeActiveImage(response->result);
    else
        store.resizeActiveCanvas(response->result);
}

void WindowCoordinator::showRotateZoomDialog() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentRotateZoomDialog);
}

void WindowCoordinator::presentRotateZoomDialog() {
    if (!m_environment.store.hasActiveProject()) return;
    if (const auto result = m_environment.dialogs.requestRotateZoom(dialogParent()))
        m_environment.store.rotateZoomSelectedLayer(*result);
}

void WindowCoordinator::showLayerPropertiesDialog() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentLayerPropertiesDialog);
}

void WindowCoordinator::presentLayerPropertiesDialog() {
    const auto layer = m_environment.store.selectedLayerForProperties();
    if (!layer) return;
    const auto result = m_environment.dialogs.requestLayerProperties(
        {layer->name, layer->opacity, layer->isVisible, layer->isLocked}, dialogParent());
    if (result) m_environment.store.applySelectedLayerProperties(*result);
}

void WindowCoordinator::showAlignObjectDialog() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentAlignObjectDialog);
}

void WindowCoordinator::presentAlignObjectDialog() {
    store::ProjectStore& store = m_environment.store;
    if (!store.hasActiveProject()) return;
    store.beginAlignObjectPreview();
    const bool isAccepted = m_environment.dialogs.requestAlignObject(
        [&store](store::AlignObjectAction action) { store.previewAlignObject(action); },
        dialogParent());
    if (isAccepted)
        store.commitAlignObjectPreview();
    else
        store.cancelAlignObjectPreview();
}

void WindowCoordinator::showColorRemovalDialog() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentColorRemovalDialog);
}

void WindowCoordinator::presentColorRemovalDialog() {
    store::ProjectStore& store = m_environment.store;
    if (!store.hasActiveProject()) return;
    store.beginColorRemovalPreview();
    const auto preview = [&store](const store::ColorRemovalSettings& settings) {
        store.previewColorRemoval(settings);
    };
    const auto settings =
        m_environment.dialogs.requestColorRemoval(store.settings(), preview, dialogParent());
    if (!settings) return store.cancelColorRemovalPreview();
    store.previewColorRemoval(*settings);
    store.commitColorRemovalPreview();
}

void WindowCoordinator::showGenerativeFillDialog() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentGenerativeFillDialog);
}

void WindowCoordinator::presentGenerativeFillDialog() {
    if (m_environment.store.canGenerativeFill())
        m_environment.dialogs.showGenerativeFill(m_environment.store, dialogParent());
}

void WindowCoordinator::showFeedbackDialog() {
    QTimer::singleShot(0, this, [this] { m_environment.dialogs.showFeedback(dialogParent()); });
}

} // namespace quillabrae::shell
