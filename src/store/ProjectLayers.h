// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <optional>

namespace quillabrae::store {

/// Where the layer lies in the project's stack; nothing for an id that is none of its layers'.
std::optional<std::size_t> layerIndex(const model::PaintProject& project, QUuid layerID);

/// A layer without pixels.
model::PaintLayer emptyLayer(const QString& name);

} // namespace quillabrae::store
