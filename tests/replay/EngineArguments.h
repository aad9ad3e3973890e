// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "model/PaintStroke.h"
#include "model/PixelSelection.h"
#include "raster/RasterImage.h"
#include "replay/Arguments.h"

#include <QJsonObject>

#include <optional>

/// What the verbs of the engine take and give, as JSON: pixels are files, everything else stands in
/// the line itself. Each reading throws ScriptError that names the key where the value is of
/// another form or a file cannot be read.
namespace quillabrae::replay {

class Session;

/// A layer: the path of a PNG whose bytes it holds as they are, an object with "path" and
/// "opacity", or null for a layer without pixels.
model::PaintLayer layerFrom(const Session& session, const Arguments& arguments, const char* key);

/// An image: the path of a PNG. A null image for null and for bytes that are no PNG, as the engine
/// itself would have it.
raster::RasterImage imageFrom(const Session& session, const Arguments& arguments, const char* key);

/// A file's bytes; nothing for null and for an absent key.
std::optional<model::PngBytes> bytesFrom(const Session& session, const Arguments& arguments,
                                         const char* key);

/// "x", "y", "width", "height" and, optionally, "mask", the path of a PNG; nothing for null and for
/// an absent key.
std::optional<model::PixelSelection> selectionFrom(const Session& session,
                                                   const Arguments& arguments, const char* key);

QRectF rectFrom(const Arguments& arguments, const char* key);
model::ColorValue colorFrom(const Arguments& arguments, const char* key);

/// The fields of a stroke by their names; only "tool" and "points" are needed.
model::PaintStroke strokeFrom(const Arguments& arguments, const char* key);

// Results. What has pixels is written to the file of the key "to", where the line has one; the
// result is then what can be compared of the PNG, or null for no pixels, which removes the file.

QJsonValue pixelResult(const Session& session, const Arguments& arguments,
                       const std::optional<model::PngBytes>& bytes);
QJsonValue pixelResult(const Session& session, const Arguments& arguments,
                       const raster::RasterImage& image);
/// The layer's pixels.
QJsonValue pixelResult(const Session& session, const Arguments& arguments,
                       const model::PaintLayer& layer);
/// The selection as an object with its mask's pixels; null for none.
QJsonValue selectionResult(const Session& session, const Arguments& arguments,
                           const std::optional<model::PixelSelection>& selection);
/// [x, y, w, h]
QJsonValue rectResult(const QRectF& rect);

} // namespace quillabrae::replay
