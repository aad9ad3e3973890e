// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"

#include <QDialog>

class QButtonGroup;

namespace quillabrae::shell {

class SliderRow;

/// Asks which colour is taken out of a layer, and shows each choice at once.
class ColorRemovalDialog final : public QDialog {
    Q_OBJECT

public:
    /// `settings` hold the colours that the tools paint with.
    ColorRemovalDialog(const model::PaintAppSettings& settings, ColorRemovalPreview preview,
                       QWidget* parent = nullptr);

    store::ColorRemovalSettings answer() const;

private:
    QWidget* makeSwatches(const model::PaintAppSettings& settings);

    SliderRow* m_tolerance;
    SliderRow* m_alphaThreshold;
    QButtonGroup* m_swatches;
};

} // namespace quillabrae::shell
