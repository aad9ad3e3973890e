// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileOperations.h"
#include "platform/WorkRunner.h"
#include "raster/RasterImage.h"

#include <QString>

/// The encoders behind the image formats. Each appends one whole picture to an empty file; all but
/// PNG take the picture for opaque. They throw FileError, platform::FileOperationError, and
/// platform::WorkCancelled when they were told so.
namespace quillabrae::persistence {

using ImageWriter = void (*)(const raster::RasterImage& picture, platform::DurableFile& file,
                             platform::WorkControl& control);

void writePng(const raster::RasterImage& picture, platform::DurableFile& file,
              platform::WorkControl& control);
void writeJpeg(const raster::RasterImage& picture, platform::DurableFile& file,
               platform::WorkControl& control);
/// Through our codec program where it is installed, else through the program `cwebp`.
void writeWebP(const raster::RasterImage& picture, platform::DurableFile& file,
               platform::WorkControl& control);
void writeHeic(const raster::RasterImage& picture, platform::DurableFile& file,
               platform::WorkControl& control);
void writeGif(const raster::RasterImage& picture, platform::DurableFile& file,
              platform::WorkControl& control);
void writeJpeg2000(const raster::RasterImage& picture, platform::DurableFile& file,
                   platform::WorkControl& control);
void writeTiff(const raster::RasterImage& picture, platform::DurableFile& file,
               platform::WorkControl& control);
void writeBmp(const raster::RasterImage& picture, platform::DurableFile& file,
              platform::WorkControl& control);
/// One embedded picture, not a drawing of vectors.
void writeSvg(const raster::RasterImage& picture, platform::DurableFile& file,
              platform::WorkControl& control);

/// The first of the known places that holds a `cwebp` that can be run; empty when none does.
QString webPEncoder();

/// WebP through the program at `encoder`, or an error when that is empty. The picture is in a file
/// in `temporaryFolder` while the program runs.
void writeWebPWithEncoder(const raster::RasterImage& picture, platform::DurableFile& file,
                          const QString& encoder, const QString& temporaryFolder,
                          const platform::WorkControl& control = {});

} // namespace quillabrae::persistence
