// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "persistence/SaveFormat.h"
#include "platform/FileOperations.h"
#include "platform/WorkRunner.h"
#include "raster/RasterImage.h"

#include <QUrl>

/// A project as one flat picture at the canvas's full size.
namespace quillabrae::persistence::ProjectImageExportService {

/// What stands where no layer has pixels.
enum class Background { transparent, white };

/// The visible layers, bottom first, each at its opacity. Null for a canvas beyond the size limits
/// of a picture. Throws platform::WorkCancelled when `control` was told so.
raster::RasterImage render(const model::PaintProject& project, Background background,
                           const platform::WorkControl& control = {});

/// Writes the flat picture in an image format, whole or not at all. `control` is told how much is
/// done, where the format's encoder tells. Throws FileError, and platform::WorkCancelled when
/// `control` was told so.
void save(const model::PaintProject& project, const QUrl& url, SaveFormat format,
          platform::FileOperations& operations, platform::WorkControl& control);
/// The same where nobody waits.
void save(const model::PaintProject& project, const QUrl& url, SaveFormat format,
          platform::FileOperations& operations = platform::systemFileOperations());

} // namespace quillabrae::persistence::ProjectImageExportService
