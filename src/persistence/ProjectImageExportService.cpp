// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ProjectImageExportService.h"

#include "persistence/FileError.h"
#include "persistence/ImageWriters.h"
#include "persistence/ProjectFileService.h"
#include "persistence/Staging.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "raster/CroppedDrawing.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/PixelMemory.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace quillabrae::persistence::ProjectImageExportService {

using platform::WorkControl;

namespace {

/// The context of this file's texts, for translators.
struct ImageExportTexts {
    Q_DECLARE_TR_FUNCTIONS(ImageExportTexts)
};

struct Row {
    SaveFormat format;
    Background background;
    ImageWriter write;
};

constexpr std::array<Row, saveFormatCount - 1> table{{
    {SaveFormat::png, Background::transparent, writePng},
    {SaveFormat::jpeg, Background::white, writeJpeg},
    {SaveFormat::heic, Background::white, writeHeic},
    {SaveFormat::webp, Background::white, writeWebP},
    {SaveFormat::tiff, Background::white, writeTiff},
    {SaveFormat::svg, Background::white, writeSvg},
    {SaveFormat::bmp, Background::white, writeBmp},
    {SaveFormat::gif, Background::white, writeGif},
    {SaveFormat::jpeg2000, Background::white, writeJpeg2000},
}};

void fillWithWhite(raster::RasterImage& image) {
    constexpr int opaqueWhite = 0xff;
    const auto bytes = image.mutableBytes();
    if (!bytes.empty()) std::memset(bytes.data(), opaqueWhite, bytes.size());
}

void saveImage(const model::PaintProject& project, const QString& path, const Row& row,
               platform::FileOperations& operations, WorkControl& control) {
    const raster::PixelRefusals refusals;
    const raster::RasterImage picture = render(project, row.background, control);
    // A layer that there was no memory for would be missing from the file.
    refusals.throwIfAny();
    if (picture.isNull()) throw FileError(ImageExportTexts::tr("The image could not be encoded."));
    writeFileAtomically(operations, path, [&](platform::DurableFile& file) {
        row.write(picture, file, control);
        control.stopIfCancelled();
    });
}

} // namespace

raster::RasterImage render(const model::PaintProject& project, Background background,
                           const WorkControl& control) {
    raster::RasterImage picture =
        raster::LayerRasterService::transparentImage(project.canvasWidth, project.canvasHeight);
    if (picture.isNull()) return picture;
    if (background == Background::white) fillWithWhite(picture);
    for (const model::PaintLayer& layer : project.layers) {
        control.stopIfCancelled();
        if (!layer.isVisible || !layer.bitmapPNGData) continue;
        raster::drawCropped(picture, raster::decodedCrop(*layer.bitmapPNGData), layer.opacity);
    }
    return picture;
}

void save(const model::PaintProject& project, const QUrl& url, SaveFormat format,
          platform::FileOperations& operations, WorkControl& control) {
    if (format == SaveFormat::project) {
        platform::NoFileIcons icons;
        ProjectFileService::save(project, url, platform::SystemClock(), icons, operations, control);
        return;
    }
    if (!url.isLocalFile())
        throw FileError::notWritten(url.toDisplayString(),
                                    ImageExportTexts::tr("It is not a local file"));
    const QString path = url.toLocalFile();
    try {
        saveImage(project, path, *std::ranges::find(table, format, &Row::format), operations,
                  control);
    } catch (const platform::FileOperationError& error) {
        throw FileError::notWritten(path, error.description());
    } catch (const std::bad_alloc&) {
        throw FileError::notWritten(path, ImageExportTexts::tr("There is not enough memory"));
    }
}

void save(const model::PaintProject& project, const QUrl& url, SaveFormat format,
          platform::FileOperations& operations) {
    WorkControl control;
    save(project, url, format, operations, control);
}

} // namespace quillabrae::persistence::ProjectImageExportService
