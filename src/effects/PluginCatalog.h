// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/QuillabraePlugin.h"

#include <vector>

namespace quillabrae::effects {

/// Every plugin there is, in the library's order.
std::vector<QuillabraePlugin> pluginCatalog();

} // namespace quillabrae::effects
