// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

/// The codecs that come as libraries of their own. They run in the program `quillabrae-codec`, so
/// the editor neither loads these libraries nor falls with them, and can end one that takes too
/// long. No Qt in here: the program is to start in a few milliseconds.
namespace quillabrae::codecs {

using Bytes = std::span<const std::uint8_t>;

/// The largest picture that is read: pixels a side, and in all.
constexpr std::int64_t maximumSide = 32768;
constexpr std::int64_t maximumPixels = 300'000'000;

/// What reading may take beside the pixels, in bytes.
constexpr std::int64_t memoryToRead = std::int64_t{2} << 30U;

/// Something is not as the codec needs it. The text is for people who look for a fault.
class CodecError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A picture is larger than may be read.
class LimitError : public CodecError {
public:
    LimitError() : CodecError("the picture is beyond the limits") {}
};

/// A picture to write: RGBA rows without padding, whose fourth byte is not looked at.
struct OpaquePicture {
    int width = 0;
    int height = 0;
    Bytes pixels;

    const std::uint8_t* row(int y) const {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width) * 4;
    }
};

/// Takes the next bytes of a file that is being written.
using ByteOutput = std::function<void(Bytes)>;

/// Is told how much of the work is done, 0 to 1.
using Progress = std::function<void(double fraction)>;

/// `quality` is 0 to 100. They throw CodecError.
void writeHeic(const OpaquePicture& picture, int quality, const ByteOutput& output);
void writeWebP(const OpaquePicture& picture, int quality, const ByteOutput& output,
               const Progress& progress);
void writeJpeg2000(const OpaquePicture& picture, int quality, const ByteOutput& output);
/// With a palette of 256 colours, dithered where the picture has more.
void writeGif(const OpaquePicture& picture, const ByteOutput& output, const Progress& progress);

enum class Alpha : std::uint32_t { none, straight, premultiplied };

/// What the components of a picture mean where it has no ICC profile.
enum class Colors : std::uint32_t { srgb, displayP3 };

/// A picture that was read, upright, as RGBA rows without padding.
struct PictureHeader {
    std::int32_t width = 0;
    std::int32_t height = 0;
    Alpha alpha = Alpha::none;
    Colors colors = Colors::srgb;
    /// An ICC profile of the components; empty for none.
    std::vector<std::uint8_t> profile;
};

/// Where a picture goes that is being read.
class PictureOutput {
public:
    virtual ~PictureOutput() = default;
    /// Called once, with a size within the limits. Memory of zeros for the pixels, which stays
    /// valid. Throws CodecError when there is none.
    virtual std::span<std::uint8_t> begin(const PictureHeader& header) = 0;
};

/// The primary picture of an HEIF file (HEIC, AVIF), and a JPEG 2000 file or codestream. They throw
/// CodecError, and LimitError before there is memory for a picture beyond the limits, and leave the
/// process memory for no larger picture than the file says that it has.
void readHeif(Bytes file, PictureOutput& output);
void readJpeg2000(Bytes file, PictureOutput& output);

struct DrawingSize {
    double width = 0.0;
    double height = 0.0;
};

/// The size that an SVG says it has, in pixels; without one that of its viewBox; without that the
/// extents of what it draws. Nothing outside of the bytes is ever loaded. Throws CodecError.
DrawingSize sizeOfSvg(Bytes file);
/// Stretched over the whole of a picture of `width` by `height` pixels; nothing behind it. Throws
/// CodecError.
void drawSvg(Bytes file, int width, int height, PictureOutput& output);

/// Throws CodecError unless a picture of that size may be read: LimitError for one too large.
void checkSize(std::int64_t width, std::int64_t height);

/// Lets the process have so much memory, in bytes, beside what it has for a picture of `pixels`
/// pixels. Does nothing where a sanitizer needs the address space.
void limitMemory(std::int64_t bytes, std::int64_t pixels);

} // namespace quillabrae::codecs
