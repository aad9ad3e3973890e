// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"
#include "platform/WorkRunner.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <functional>
#include <optional>

namespace quillabrae::persistence {

/// Whole pixels.
struct SVGImportSizeResult {
    double width = 1.0;
    double height = 1.0;

    friend bool operator==(const SVGImportSizeResult&, const SVGImportSizeResult&) = default;
};

/// The size that was picked for a drawing is beyond the limits of a picture.
class SVGSizeRefused {};

/// SVGs become pixels once, at a size that the user picks.
namespace SVGImportService {

/// Asks for the size to draw at; the natural one is given. Nothing when the user cancels.
using SizeRequest = std::function<std::optional<SVGImportSizeResult>(QSizeF naturalSize)>;

/// Nothing for bytes that are no SVG (then nothing is asked), for one without a size, or when the
/// user cancels. Throws SVGSizeRefused.
std::optional<model::PastedImage> pastedImage(const QByteArray& svgData,
                                              const SizeRequest& requestSize,
                                              platform::WorkRunner& work);

/// The first width and height attributes in the text, whatever their units; else the size of the
/// first viewBox; else `fallback`.
QSizeF naturalSize(const QByteArray& svgData, QSizeF fallback);
/// The number that the first attribute of that name begins with, in any letter case.
std::optional<double> svgLength(const QString& name, const QString& text);
std::optional<QSizeF> svgViewBox(const QString& text);

/// The drawing stretched over `width` by `height` pixels, rounded, at least 1 each.
std::optional<model::PastedImage> rasterizedPastedImage(const QByteArray& svgData, double width,
                                                        double height,
                                                        const platform::WorkControl& control = {});

} // namespace SVGImportService
} // namespace quillabrae::persistence
