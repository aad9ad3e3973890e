// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"

#include <QString>

#include <optional>

namespace quillabrae::store {

/// Why an image did not come in.
enum class IntakeFailure { unreadable, beyondLimits, cancelled };

/// An image on its way in; without one `failure` tells why.
struct Intake {
    std::optional<model::PastedImage> image;
    IntakeFailure failure = IntakeFailure::unreadable;
};

/// What the status line says of a file whose image does not come in.
QString unreadableImage();

} // namespace quillabrae::store
