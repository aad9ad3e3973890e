// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are the manifest of a plugin, which is written and read again as the same, or none.
#include "FuzzInput.h"
#include "effects/QuillabraePlugin.h"

using namespace quillabrae;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto plugin = effects::pluginFromManifest(fuzz::bytesOf(data, size));
    if (plugin) fuzz::require(effects::pluginFromManifest(effects::manifest(*plugin)) == plugin);
    return 0;
}
