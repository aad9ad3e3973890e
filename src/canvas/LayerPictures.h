// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/DeviceView.h"
#include "canvas/PictureCoverage.h"
#include "model/PaintProject.h"
#include "model/PngBytes.h"
#include "raster/CroppedImage.h"
#include "raster/DecodeCache.h"

#include <QRect>
#include <QRectF>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace quillabrae::canvas {

/// Pixels that stand on the canvas: a picture stretched to `target` (canvas pixels), of which
/// `pixels` is what it shows.
struct CanvasPicture {
    raster::CroppedImage pixels;
    QRectF target;
    std::uint8_t fraction = 255;
    /// Of `pixels.image`. Null when nothing is known of it, because it is being drawn on.
    std::shared_ptr<PictureCoverage> coverage;
};

/// What layers show on some device pixels, bottom first: each visible layer's pixels, followed by
/// the floating pixels that belong to it. Layers without readable pixels show nothing, and what
/// shows nothing there, or is hidden from sight, is left out.
///
/// Decoded a group at a time, since the pixels of all of them may be more than there is memory:
/// each group is laid over what the groups before it came to, which gives the very pixels that all
/// at once would.
class LayerPictures {
public:
    /// Project, layers and coverage outlive this; `device` is not empty. Used on one thread.
    LayerPictures(const model::PaintProject& project, std::span<const model::PaintLayer> layers,
                  const DeviceView& view, const QRect& device, CoverageCache& coverage);

    bool isAtEnd() const { return m_isTopTaken; }

    /// The next pictures, not at the end. None when nothing that was left can be seen.
    std::vector<CanvasPicture> nextGroup();

    /// A group is at an end when its pictures, beside those that the decode cache remembers, come
    /// to so many bytes of pixels: a quarter of what that may hold.
    static std::size_t groupBudget();

private:
    struct Source {
        const model::PngBytes& bytes;
        QRectF target;
        std::uint8_t fraction = 255;
    };
    /// The pixels of a picture that are sampled, and whether every device pixel samples one.
    struct Window {
        QRectF target;
        QSize wholeSize;
        QRect pixels;
        bool isEverywhere = false;
    };

    /// Pictures that are held at the same time.
    struct Group {
        std::vector<CanvasPicture> pictures;
        /// Of pixels that the decode cache does not remember.
        std::size_t heldBytes = 0;

        bool hasRoom() const { return pictures.empty() || heldBytes < groupBudget(); }
    };

    void readTop();
    /// Whether the picture shows something and is now the group's last.
    bool readInto(Group& group, const Source& source);
    /// Nothing when it shows nothing.
    std::optional<CanvasPicture> pictureOf(const Source& source);
    const Window& windowOf(const QRectF& target, QSize wholeSize);
    bool hidesAll(const CanvasPicture& picture);

    raster::DecodeCachePass m_pass;
    DeviceView m_view;
    QRect m_device;
    CoverageCache& m_coverage;
    std::vector<Source> m_sources;
    std::size_t m_next = 0;
    /// The last group: it is read first, since there may be nothing to be seen below.
    std::vector<CanvasPicture> m_top;
    bool m_isTopTaken = false;
    std::vector<Window> m_windows;
};

} // namespace quillabrae::canvas
