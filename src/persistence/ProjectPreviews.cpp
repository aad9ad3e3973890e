// SPDX-License-Identifier: GPL-3.0-or-later
// The pictures in a package that show it to those who cannot read a project.
#include "persistence/ProjectFileService.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

namespace quillabrae::persistence::ProjectFileService {
namespace {

constexpr int iconSide = 1024;
constexpr int pointsPerInch = 72;

} // namespace

raster::RasterImage fileIconImage(const raster::RasterImage& image) {
    raster::RasterImage icon(iconSide, iconSide);
    if (image.isNull() || icon.isNull()) return icon;
    const QSizeF size(image.width(), image.height());
    const double scale = std::min(iconSide / size.width(), iconSide / size.height());
    const QSizeF scaled = size * scale;
    const QRectF place(
        QPointF((iconSide - scaled.width()) * 0.5, (iconSide - scaled.height()) * 0.5), scaled);

    QImage picture = image.toQImage();
    const bool isReduced = scale < 1.0;
    if (isReduced) {
        const QSize whole = scaled.toSize().expandedTo(QSize(1, 1));
        picture = picture.scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QImage target = icon.paintTarget();
    QPainter painter(&target);
    // Enlarged pixels keep their edges.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, isReduced);
    painter.drawImage(place, picture);
    return icon;
}

QByteArray previewPDFData(const raster::RasterImage& image) {
    if (image.isNull()) return {};
    const QSize size(image.width(), image.height());
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);

    QPdfWriter writer(&buffer);
    writer.setResolution(pointsPerInch);
    writer.setPageSize(QPageSize(QSizeF(size), QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    if (!painter.begin(&writer)) return {};
    // The same pixels, known to be opaque, so that no mask of their alpha is written.
    const QImage picture(image.bytes().data(), size.width(), size.height(),
                         static_cast<qsizetype>(image.stride()), QImage::Format_RGBX8888);
    painter.drawImage(QRect(QPoint(), size), picture);
    return painter.end() ? bytes : QByteArray();
}

} // namespace quillabrae::persistence::ProjectFileService
