// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ProjectLayers.h"

#include <algorithm>

namespace quillabrae::store {

std::optional<std::size_t> layerIndex(const model::PaintProject& project, QUuid layerID) {
    const auto found = std::ranges::find(project.layers, layerID, &model::PaintLayer::id);
    if (found == project.layers.end()) return std::nullopt;
    return static_cast<std::size_t>(found - project.layers.begin());
}

model::PaintLayer emptyLayer(const QString& name) {
    model::PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.name = name;
    return layer;
}

} // namespace quillabrae::store
