// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"

#include <QUrl>

#include <optional>

namespace quillabrae::store {

/// The picture in a file, without an origin; nothing where it cannot be read.
std::optional<model::PastedImage> imageInFile(const QUrl& location);

} // namespace quillabrae::store
