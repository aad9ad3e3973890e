// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ImageFile.h"

#include "raster/DecodeCache.h"
#include "raster/ImageReader.h"
#include "store/FileLocation.h"

#include <utility>

namespace quillabrae::store {

std::optional<model::PastedImage> imageInFile(const QUrl& location) {
    if (lowercasedExtension(location) == QLatin1StringView("svg")) return std::nullopt;
    const auto image = raster::readImageFile(location.toLocalFile());
    if (!image || image->isNull()) return std::nullopt;
    model::PngBytes bytes = raster::encodedImage(*image);
    if (bytes.isEmpty()) return std::nullopt;
    return model::PastedImage{std::move(bytes), double(image->width()), double(image->height()),
                              std::nullopt, std::nullopt};
}

} // namespace quillabrae::store
