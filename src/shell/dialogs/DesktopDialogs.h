// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"
#include "shell/dialogs/FeedbackDialogView.h"

#include <QDialog>
#include <QPointer>

namespace quillabrae::shell {

/// The dialogs on the screen.
class DesktopDialogs final : public Dialogs {
public:
    explicit DesktopDialogs(FeedbackDialogView::Environment feedback);

    std::optional<NewProjectDialogResult> requestNewProject(QSizeF size, QWidget* parent) override;
    std::optional<ResizeDialogResponse> requestResize(const ResizeDialogRequest& request,
                                                      QWidget* parent) override;
    std::optional<store::RotateZoomDialogResult> requestRotateZoom(QWidget* parent) override;
    std::optional<store::LayerPropertiesDialogResult> requestLayerProperties(
        const store::LayerPropertiesDialogResult& layer, QWidget* parent) override;
    bool requestAlignObject(const AlignObjectPreview& preview, QWidget* parent) override;
    std::optional<store::ColorRemovalSettings> requestColorRemoval(
        const model::PaintAppSettings& settings, const ColorRemovalPreview& preview,
        QWidget* parent) override;
    void showGenerativeFill(store::ProjectStore& store, QWidget* parent) override;
    void showFeedback(QWidget* parent) override;

private:
    FeedbackDialogView::Environment m_feedbackEnvironment;
    QPointer<QDialog> m_generativeFill;
    QPointer<QDialog> m_feedback;
};

} // namespace quillabrae::shell
