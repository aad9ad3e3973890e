// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayerOpacityEdit.h"

#include "store/ProjectStore.h"

#include <utility>

namespace quillabrae::shell {

void LayerOpacityEdit::show(double opacity) {
    m_store.editActiveProject([&](model::PaintProject& project) {
        model::PaintLayer* layer = project.selectedLayer();
        if (layer == nullptr || layer->opacity == opacity) return;
        layer->opacity = opacity;
        m_shown = Shown{layer->id, opacity};
    });
}

void LayerOpacityEdit::settle() {
    const auto shown = std::exchange(m_shown, std::nullopt);
    const auto layer = m_store.selectedLayerForProperties();
    if (!shown || !layer || layer->id != shown->layerID || layer->opacity != shown->opacity) return;
    m_store.applySelectedLayerProperties({.name = layer->name,
                                          .opacity = layer->opacity,
                                          .isVisible = layer->isVisible,
                                          .isLocked = layer->isLocked});
}

} // namespace quillabrae::shell
