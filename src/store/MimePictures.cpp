// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/MimePictures.h"

#include "raster/DecodeCache.h"

namespace quillabrae::store {

namespace MimeTypes = platform::MimeTypes;

QStringList pictureTypes(const platform::MimeSource& source) {
    const QStringList offered = source.types();
    QStringList types;
    for (const QString& type : {MimeTypes::png, MimeTypes::tiff, MimeTypes::webP}) {
        if (offered.contains(type)) types.append(type);
    }
    for (const QString& type : offered) {
        const bool isPicture =
            type.startsWith(QLatin1StringView("image/")) && type != MimeTypes::svg;
        if (isPicture && !types.contains(type)) types.append(type);
    }
    return types;
}

QByteArray svgIn(const platform::MimeSource& source) {
    if (source.types().contains(MimeTypes::svg)) {
        QByteArray drawing = source.data(MimeTypes::svg);
        if (!drawing.isEmpty()) return drawing;
    }
    const QString text = platform::textOf(source);
    if (!text.contains(QLatin1StringView("<svg"), Qt::CaseInsensitive)) return {};
    return text.toUtf8();
}

std::optional<model::PastedImage> pastedImageOf(const raster::RasterImage& image) {
    if (image.isNull()) return std::nullopt;
    model::PngBytes bytes = raster::encodedImage(image);
    if (bytes.isEmpty()) return std::nullopt;
    return model::PastedImage{std::move(bytes), double(image.width()), double(image.height()),
                              std::nullopt, std::nullopt};
}

} // namespace quillabrae::store
