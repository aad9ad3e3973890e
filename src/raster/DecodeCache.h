// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/CroppedImage.h"
#include "raster/PngCodec.h"
#include "raster/RasterImage.h"

#include <cstddef>

/// The images that were decoded or encoded last, kept within a budget of bytes, each for as long as
/// its PNG bytes are held anywhere. Invisible but for its speed: the same calls give the same
/// pixels and the same bytes without it. Safe on any thread.
namespace quillabrae::raster {

/// `decodePng`, remembered.
RasterImage decodedImage(const model::PngBytes& bytes);

/// `decodeCroppedPng`, remembered: for looking at pixels that are not going to be drawn on. A
/// picture that is remembered whole comes whole.
CroppedImage decodedCrop(const model::PngBytes& bytes);

/// Whether the cache holds the pixels of these bytes, so that others may hold them at no cost.
bool isRemembered(const model::PngBytes& bytes);

/// `encodePng`, which leaves the image as the decoding of its own bytes.
model::PngBytes encodedImage(const RasterImage& image);

/// The same by way of an earlier encoding, as `encodePng` does it.
model::PngBytes encodedImage(const RasterImage& image, const model::PngBytes& previous,
                             RowRange changedRows);

/// Forgets every image. Those that are in use elsewhere live on there.
void clearDecodeCache();

/// Gives back to the system what is kept of pictures that nobody holds any more: their decoded
/// pixels, freed pixel memory and the freed heap. Takes milliseconds: for the end of some work.
void returnUnusedMemory();

/// The most bytes of pixels that the cache keeps. 512 MiB unless set, and never more than a quarter
/// of the machine's memory.
void setDecodeCacheBudget(std::size_t bytes);

std::size_t decodeCacheBudget();

/// The bytes of pixels that the cache holds now.
std::size_t decodeCacheSize();

/// While alive, calls on this thread use what is remembered and remember nothing new. For work that
/// goes once through many images and would push out those that are looked at.
class DecodeCacheReadOnly {
public:
    DecodeCacheReadOnly();
    ~DecodeCacheReadOnly();
    DecodeCacheReadOnly(const DecodeCacheReadOnly&) = delete;
    DecodeCacheReadOnly& operator=(const DecodeCacheReadOnly&) = delete;

private:
    bool m_previous;
};

/// While alive, what this thread asks for does not push out anything that has been used in the
/// meantime. For work that goes again and again through more images than there is room for: the
/// first of them are remembered from one time to the next, where otherwise each would be pushed out
/// before its turn comes again.
class DecodeCachePass {
public:
    DecodeCachePass();
    ~DecodeCachePass();
    DecodeCachePass(const DecodeCachePass&) = delete;
    DecodeCachePass& operator=(const DecodeCachePass&) = delete;

private:
    std::size_t m_previous;
};

} // namespace quillabrae::raster
