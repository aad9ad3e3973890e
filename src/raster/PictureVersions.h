// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <QRect>

#include <cstdint>
#include <vector>

namespace quillabrae::raster {

/// What a picture has been, from one drawing on it to the next: numbers of pixels, not the pixels
/// themselves. The next drawing is done on an earlier version that nobody holds any more, with the
/// little that has changed since copied into it, instead of on a copy of all.
class PictureVersions {
public:
    /// `after` came of `before` by a drawing that touched nothing outside `changed`. Forgets what
    /// does not lead to `before`.
    void add(const RasterImage& before, const RasterImage& after, const QRect& changed);

    /// The same pixels, to draw on. `image` itself, which is copied when it is first written, where
    /// there is no earlier version, or where as much has changed since.
    RasterImage drawable(const RasterImage& image);

private:
    struct Version {
        std::uint64_t contentsID = 0;
        /// Where the next version differs from it.
        QRect changed;
    };

    /// Newest first.
    std::vector<Version> m_earlier;
    std::uint64_t m_latest = 0;
};

} // namespace quillabrae::raster
