// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"
#include "model/PngBytes.h"

#include <QJsonValue>

namespace quillabrae::replay {

class Session;

/// An image argument: a path, or an object with "path" and the "sourceX" and "sourceY" of an
/// origin. Throws ScriptError for a file that holds no picture.
model::PastedImage pastedImageFrom(const Session& session, const QJsonValue& value);

/// A file's bytes as they are. Throws ScriptError for a file that cannot be read.
model::PngBytes fileBytes(const Session& session, const QString& path);

} // namespace quillabrae::replay
