// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/SVGImportService.h"

#include "persistence/ImageCodecs.h"
#include "raster/DecodeCache.h"
#include "raster/SurfaceSize.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringDecoder>

namespace quillabrae::persistence::SVGImportService {
namespace {

/// The context of this file's texts, for translators.
struct SVGImportTexts {
    Q_DECLARE_TR_FUNCTIONS(SVGImportTexts)
};

ImageCodecs::Bytes bytesOf(const QByteArray& data) {
    return {reinterpret_cast<const std::uint8_t*>(data.constData()),
            static_cast<std::size_t>(data.size())};
}

bool isPositive(QSizeF size) {
    return size.width() > 0.0 && size.height() > 0.0;
}

std::optional<double> number(const QRegularExpressionMatch& match, int group) {
    bool isNumber = false;
    const double value = match.captured(group).toDouble(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

QRegularExpressionMatch firstMatch(const QString& pattern, const QString& text) {
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption).match(text);
}

} // namespace

std::optional<double> svgLength(const QString& name, const QString& text) {
    const auto match =
        firstMatch(QStringLiteral(R"(\b%1\s*=\s*["']\s*([0-9]*\.?[0-9]+))").arg(name), text);
    return match.hasMatch() ? number(match, 1) : std::nullopt;
}

std::optional<QSizeF> svgViewBox(const QString& text) {
    const auto match =
        firstMatch(QStringLiteral(R"(\bviewBox\s*=\s*["']\s*([-0-9.]+)[,\s]+([-0-9.]+))"
                                  R"([,\s]+([0-9]*\.?[0-9]+)[,\s]+([0-9]*\.?[0-9]+))"),
                   text);
    if (!match.hasMatch()) return std::nullopt;
    const auto width = number(match, 3);
    const auto height = number(match, 4);
    return width && height ? std::optional(QSizeF(*width, *height)) : std::nullopt;
}

QSizeF naturalSize(const QByteArray& svgData, QSizeF fallback) {
    // What is no UTF-8 is no ASCII either.
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(svgData);
    if (decoder.hasError()) return fallback;
    const auto width = svgLength(QStringLiteral("width"), text);
    const auto height = svgLength(QStringLiteral("height"), text);
    if (width && height && isPositive({*width, *height})) return {*width, *height};
    const auto viewBox = svgViewBox(text);
    return viewBox && isPositive(*viewBox) ? *viewBox : fallback;
}

std::optional<model::PastedImage> rasterizedPastedImage(const QByteArray& svgData, double width,
                                                        double height,
                                                        const platform::WorkControl& control) {
    const auto size = raster::surfaceSize(width, height);
    if (!size) return std::nullopt;
    const auto drawing = ImageCodecs::drawSvg(bytesOf(svgData), *size, control);
    if (!drawing) return std::nullopt;
    control.stopIfCancelled();
    model::PngBytes png = raster::encodedImage(*drawing);
    if (png.isEmpty()) return std::nullopt;
    return model::PastedImage{std::move(png), double(size->width()), double(size->height()),
                              std::nullopt, std::nullopt};
}

std::optional<model::PastedImage> pastedImage(const QByteArray& svgData,
                                              const SizeRequest& requestSize,
                                              platform::WorkRunner& work) {
    const QString title = SVGImportTexts::tr("Importing SVG");
    std::optional<model::PastedImage> pasted;
    try {
        std::optional<QSizeF> drawn;
        work.run(title, [&](const platform::WorkControl& control) {
            drawn = ImageCodecs::sizeOfSvg(bytesOf(svgData), control);
        });
        if (!drawn) return std::nullopt;
        const QSizeF natural = naturalSize(svgData, *drawn);
        if (!isPositive(natural)) return std::nullopt;
        const auto size = requestSize(natural);
        if (!size) return std::nullopt;
        if (!raster::surfaceSize(size->width, size->height)) throw SVGSizeRefused();
        work.run(title, [&](const platform::WorkControl& control) {
            pasted = rasterizedPastedImage(svgData, size->width, size->height, control);
        });
    } catch (const platform::WorkCancelled&) {
        return std::nullopt;
    }
    return pasted;
}

} // namespace quillabrae::persistence::SVGImportService
