// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/FloatingPanel.h"
#include "shell/panels/LayerOpacityEdit.h"
#include "shell/panels/PanelButtons.h"

#include <span>

namespace quillabrae::shell {

class LabeledSlider;

/// The buttons under the layers.
std::span<const PanelButton> layerButtons();

/// The layer stack of the active project, the selected layer's opacity and the layer commands.
class LayersPanel final : public FloatingPanel {
    Q_OBJECT

public:
    explicit LayersPanel(PanelContext context, QWidget* parent = nullptr);

private:
    void showOpacity();

    store::ProjectStore& m_store;
    LayerOpacityEdit m_opacityEdit;
    LabeledSlider* m_opacity;
};

} // namespace quillabrae::shell
