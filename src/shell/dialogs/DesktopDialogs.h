// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"

#include <QDialog>
#include <QPointer>

namespace quillabrae::shell {

/// The dialogs on the screen.
class DesktopDialogs final : public Dialogs {
public:
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

private:
    QPointer<QDialog> m_generativeFill;
};

} // namespace quillabrae::shell
