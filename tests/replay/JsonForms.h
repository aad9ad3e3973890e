// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"
#include "model/PaintHistory.h"
#include "model/PaintProject.h"
#include "model/RecentProject.h"

#include <QJsonObject>

/// What a script sees of the records: their field names, with each PNG replaced by what can be
/// compared of it. An absent field is null.
namespace quillabrae::replay {

QJsonValue toJson(const model::ColorValue& color);
/// Byte count, pixel size and SHA-256.
QJsonValue toJson(const std::optional<model::PngBytes>& bytes);
QJsonValue toJson(const model::PaintLayer& layer);
QJsonValue toJson(const std::optional<model::PixelSelection>& selection);
QJsonValue toJson(const model::PaintProject& project);
/// The titles, the symbols and the selected index.
QJsonValue toJson(const model::PaintHistoryState& history);
QJsonValue toJson(const model::RecentProject& recent);
QJsonValue toJson(const QUuid& id);
QJsonValue toJson(const std::optional<QUrl>& url);

} // namespace quillabrae::replay
