// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "platform/FileOperations.h"
#include "platform/WorkRunner.h"
#include "raster/RasterImage.h"

#include <QByteArray>
#include <QUrl>

namespace quillabrae::platform {
class Clock;
class FileIcons;
} // namespace quillabrae::platform

/// Project packages: a folder "*.quillabrae" with the project's JSON and two previews.
namespace quillabrae::persistence::ProjectFileService {

/// Writes the package whole or not at all, and gives it an icon of its picture where the desktop
/// can show one. The copy that is written has no `fileURL` and is stamped with the present time.
/// Throws FileError, or platform::WorkCancelled when `control` was told so; then the old package,
/// if any, stands as it was and nothing is left beside it.
void save(const model::PaintProject& project, const QUrl& url, const platform::Clock& clock,
          platform::FileIcons& icons,
          platform::FileOperations& operations = platform::systemFileOperations(),
          const platform::WorkControl& control = {});

/// Reads a package, or a plain file that holds the same JSON. The result has no `fileURL`. Throws
/// FileError.
model::PaintProject read(const QUrl& url);

/// A 1024 by 1024 picture with `image` scaled to fit, centred on clear.
raster::RasterImage fileIconImage(const raster::RasterImage& image);

/// A page of PDF that shows an opaque image at its own size, one point a pixel; empty for a null
/// image.
QByteArray previewPDFData(const raster::RasterImage& image);

} // namespace quillabrae::persistence::ProjectFileService
