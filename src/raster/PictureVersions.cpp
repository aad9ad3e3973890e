// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PictureVersions.h"

#include "raster/PixelCopy.h"

#include <QRegion>

namespace quillabrae::raster {
namespace {

/// So many drawings change so much together that an older version would be of no use.
constexpr std::size_t mostVersions = 32;

qint64 pixelsIn(const QRegion& region) {
    qint64 pixels = 0;
    for (const QRect& rect : region) pixels += qint64{rect.width()} * rect.height();
    return pixels;
}

} // namespace

void PictureVersions::add(const RasterImage& before, const RasterImage& after,
                          const QRect& changed) {
    if (before.contentsID() != m_latest) m_earlier.clear();
    if (m_earlier.size() == mostVersions) m_earlier.pop_back();
    m_earlier.insert(m_earlier.begin(), {before.contentsID(), changed});
    m_latest = after.contentsID();
}

RasterImage PictureVersions::drawable(const RasterImage& image) {
    if (image.contentsID() != m_latest) return image;
    const qint64 worthwhile = qint64{image.width()} * image.height() / 2;
    QRegion changed;
    for (const Version& version : m_earlier) {
        changed |= version.changed;
        if (pixelsIn(changed) > worthwhile) break;
        RasterImage earlier =
            RasterImage::takenBack(version.contentsID, image.width(), image.height());
        if (earlier.isNull()) continue;
        earlier.setLogicalSize(image.logicalSize());
        for (const QRect& rect : changed) copyPixels(image, earlier, rect);
        return earlier;
    }
    return image;
}

} // namespace quillabrae::raster
