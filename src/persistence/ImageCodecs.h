// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileOperations.h"
#include "platform/WorkRunner.h"
#include "raster/ImageReader.h"
#include "raster/RasterImage.h"

#include <QByteArray>
#include <QSize>
#include <QSizeF>

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>

/// The codecs that run beside the editor, in the program `quillabrae-codec`. It is killed when it
/// takes too long, and nothing that a file makes it do harms the editor. All throw
/// platform::WorkCancelled when `control` was told so.
namespace quillabrae::persistence::ImageCodecs {

using Bytes = std::span<const std::uint8_t>;

/// Whether there is such a program.
bool areAvailable();

enum class Encoding { heic, webp, gif, jpeg2000 };

/// Appends the picture, taken for opaque, to an empty file. False when it cannot be encoded.
/// `quality` is 0 to 100; GIF has none. `control` is told how much is done, where that is known.
/// Throws platform::FileOperationError.
bool write(const raster::RasterImage& picture, Encoding encoding, int quality,
           platform::DurableFile& file, platform::WorkControl& control);

enum class Decoding { heif, jpeg2000 };

/// Upright and in sRGB; nothing for a file that is broken or beyond the size limits, of which
/// `refusal` then tells which.
std::optional<raster::RasterImage> read(Bytes file, Decoding decoding,
                                        raster::ImageRefusal& refusal,
                                        const platform::WorkControl& control = {});

/// A drawing that takes longer was made to.
constexpr std::chrono::seconds timeToDraw{10};

/// The size that an SVG gives itself, else that of what it shows. Nothing for a file that is no
/// SVG, or one of nothing.
std::optional<QSizeF> sizeOfSvg(Bytes file, const platform::WorkControl& control = {});
/// The drawing stretched to `size`, within the limits of a picture, on clear. Nothing that is not
/// within the bytes is loaded. Nothing when it takes longer than `time`, or more memory than a
/// drawing does.
std::optional<raster::RasterImage> drawSvg(Bytes file, QSize size,
                                           const platform::WorkControl& control = {},
                                           std::chrono::milliseconds time = timeToDraw);

} // namespace quillabrae::persistence::ImageCodecs
