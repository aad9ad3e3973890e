// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::store {

/// Why a generative fill came to nothing, where the service itself does not say.
enum class GenerativeFillError {
    missingAPIKey,
    noSelection,
    invalidGeneratedImage,
    projectChanged,
    applyFailed,
};

/// A sentence for the user.
QString description(GenerativeFillError error);

} // namespace quillabrae::store
