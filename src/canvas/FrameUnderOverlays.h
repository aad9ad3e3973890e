// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPainter>
#include <QRect>
#include <QRegion>
#include <QSizeF>

#include <functional>

namespace quillabrae::canvas {

/// The viewport as it looks without what marches over it, kept from paint to paint, so that a tick
/// of the ants does not compose the layers again. Coordinates are points of the viewport.
class FrameUnderOverlays {
public:
    /// The frame, complete inside `needed`; `paint` is asked for the rectangles that are missing.
    /// What it was refused memory for it is asked for again the next time.
    const QImage& image(QSize viewportSize, double devicePixelRatio, const QRegion& needed,
                        const std::function<void(QPainter&, const QRect&)>& paint);
    /// What shows there has changed.
    void invalidate(const QRect& rect) { m_valid -= rect; }
    void invalidateAll() { m_valid = {}; }
    /// Gives up the memory.
    void drop();

private:
    QImage m_image;
    QRegion m_valid;
};

} // namespace quillabrae::canvas
