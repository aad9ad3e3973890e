// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/CroppedDrawing.h"

#include "raster/BlendKernels.h"

#include <algorithm>

namespace quillabrae::raster {
namespace {

AxisSamples stretchedPart(int wholeCount, int first, int count, int destinationCount) {
    return samplesWithin(stretchSamples(wholeCount, 0, destinationCount, destinationCount), first,
                         count);
}

} // namespace

AxisSamples samplesWithin(const AxisSamples& whole, int first, int count) {
    const auto begin = std::ranges::lower_bound(whole.source, first);
    const auto end = std::lower_bound(begin, whole.source.end(), first + count);
    AxisSamples samples{whole.first + static_cast<int>(begin - whole.source.begin()), {begin, end}};
    for (std::int32_t& source : samples.source) source -= first;
    return samples;
}

void drawCropped(RasterImage& destination, const CroppedImage& picture, double fraction) {
    const QRect part = picture.part();
    drawSamples(
        destination, picture.image,
        stretchedPart(picture.wholeSize.width(), part.left(), part.width(), destination.width()),
        stretchedPart(picture.wholeSize.height(), part.top(), part.height(), destination.height()),
        unitByte(fraction));
}

} // namespace quillabrae::raster
