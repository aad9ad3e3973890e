// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/FrameUnderOverlays.h"

#include "raster/PixelMemory.h"

namespace quillabrae::canvas {

const QImage& FrameUnderOverlays::image(QSize viewportSize, double devicePixelRatio,
                                        const QRegion& needed,
                                        const std::function<void(QPainter&, const QRect&)>& paint) {
    const QSize size = (QSizeF(viewportSize) * devicePixelRatio).toSize();
    if (m_image.size() != size || m_image.devicePixelRatio() != devicePixelRatio) {
        m_image = QImage(size, QImage::Format_RGB32);
        m_image.setDevicePixelRatio(devicePixelRatio);
        m_valid = {};
    }
    const QRegion missing = needed - m_valid;
    if (!missing.isEmpty()) {
        const raster::PixelRefusals refusals;
        QPainter painter(&m_image);
        for (const QRect& rect : missing) paint(painter, rect);
        // A layer that there was no memory for is missing.
        if (!refusals.any()) m_valid += missing;
    }
    return m_image;
}

void FrameUnderOverlays::drop() {
    m_image = {};
    m_valid = {};
}

} // namespace quillabrae::canvas
