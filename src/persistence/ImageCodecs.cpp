// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ImageCodecs.h"

#include "codecs/Codecs.h"
#include "codecs/Protocol.h"
#include "platform/HelperProcess.h"
#include "raster/PngCodec.h"

#include <QColorSpace>
#include <QImage>

#include <array>
#include <chrono>
#include <cstring>
#include <functional>

namespace quillabrae::persistence::ImageCodecs {
namespace {

using namespace std::chrono_literals;
using platform::HelperEnd;
using platform::SharedMemory;
using platform::WorkControl;

/// Enough for the largest picture on a slow machine.
constexpr auto timeToWrite = 30min;
constexpr auto timeToRead = 120s;

bool run(const QStringList& arguments, const SharedMemory& input, const SharedMemory& output,
         std::chrono::milliseconds time, const WorkControl& control,
         const std::function<void(double)>& tellProgress = {}) {
    const QString program = platform::helperProgram(QStringLiteral("quillabrae-codec"));
    return platform::runHelper(program, arguments, input, output, time, control, tellProgress) ==
           HelperEnd::succeeded;
}

struct Writer {
    const char* verb;
    bool hasQuality;
};

constexpr std::array<Writer, 4> writers{
    {{"write-heic", true}, {"write-webp", true}, {"write-gif", false}, {"write-jpeg2000", true}}};

constexpr std::array<const char*, 2> readers{"read-heif", "read-jpeg2000"};

QImage::Format formatOf(const codecs::PictureRecord& record) {
    switch (static_cast<codecs::Alpha>(record.alpha)) {
        case codecs::Alpha::straight:
            return QImage::Format_RGBA8888;
        case codecs::Alpha::premultiplied:
            return QImage::Format_RGBA8888_Premultiplied;
        case codecs::Alpha::none:
            break;
    }
    return QImage::Format_RGBX8888;
}

QColorSpace colorSpaceOf(const codecs::PictureRecord& record, Bytes profile) {
    if (!profile.empty())
        return QColorSpace::fromIccProfile(QByteArray(reinterpret_cast<const char*>(profile.data()),
                                                      static_cast<qsizetype>(profile.size())));
    const bool isP3 = record.colors == static_cast<std::uint32_t>(codecs::Colors::displayP3);
    return isP3 ? QColorSpace(QColorSpace::DisplayP3) : QColorSpace();
}

/// What the helper has said is believed no further than it can be checked.
std::optional<raster::RasterImage> pictureIn(Bytes output) {
    codecs::PictureRecord record{};
    if (output.size() < sizeof record) return std::nullopt;
    std::memcpy(&record, output.data(), sizeof record);
    output = output.subspan(sizeof record);
    if (!raster::isDecodableSize(record.width, record.height)) return std::nullopt;
    const std::size_t pixelBytes =
        static_cast<std::size_t>(record.width) * static_cast<std::size_t>(record.height) * 4;
    if (output.size() < pixelBytes || output.size() - pixelBytes != record.profileSize)
        return std::nullopt;

    QImage picture(output.data(), record.width, record.height, qsizetype{4} * record.width,
                   formatOf(record));
    const QColorSpace space = colorSpaceOf(record, output.subspan(pixelBytes));
    if (space.isValid() && space != QColorSpace(QColorSpace::SRgb)) {
        picture.setColorSpace(space);
        picture.convertToColorSpace(QColorSpace::SRgb);
    }
    // The memory is the helper's: the pixels are to be our own.
    if (picture.constBits() == output.data()) picture = picture.copy();
    raster::RasterImage image = raster::RasterImage::fromQImage(std::move(picture));
    return image.isNull() ? std::nullopt : std::optional(std::move(image));
}

/// Whether the helper has done its work on the file.
bool runOver(Bytes file, const QStringList& arguments, SharedMemory& output,
             std::chrono::milliseconds time, const WorkControl& control) {
    SharedMemory input;
    return input.write(file) && run(arguments, input, output, time, control);
}

} // namespace

bool areAvailable() {
    return !platform::helperProgram(QStringLiteral("quillabrae-codec")).isEmpty();
}

bool write(const raster::RasterImage& picture, Encoding encoding, int quality,
           platform::DurableFile& file, WorkControl& control) {
    const Writer& writer = writers.at(static_cast<std::size_t>(encoding));
    QStringList arguments{QString::fromLatin1(writer.verb), QString::number(picture.width()),
                          QString::number(picture.height())};
    if (writer.hasQuality) arguments << QString::number(quality);
    SharedMemory input;
    SharedMemory output;
    const auto tellProgress = [&control](double fraction) { control.setFraction(fraction); };
    if (!input.write(picture.bytes()) ||
        !run(arguments, input, output, timeToWrite, control, tellProgress))
        return false;
    const Bytes written = output.bytes();
    if (written.empty()) return false;
    file.write({reinterpret_cast<const char*>(written.data()), written.size()});
    return true;
}

std::optional<raster::RasterImage> read(Bytes file, Decoding decoding,
                                        raster::ImageRefusal& refusal, const WorkControl& control) {
    const char* verb = readers.at(static_cast<std::size_t>(decoding));
    SharedMemory output;
    refusal = raster::ImageRefusal::unreadable;
    if (!runOver(file, {QString::fromLatin1(verb)}, output, timeToRead, control))
        return std::nullopt;
    if (output.bytes().empty()) refusal = raster::ImageRefusal::beyondLimits;
    return pictureIn(output.bytes());
}

std::optional<QSizeF> sizeOfSvg(Bytes file, const WorkControl& control) {
    SharedMemory output;
    if (!runOver(file, {QStringLiteral("svg-size")}, output, timeToDraw, control))
        return std::nullopt;
    codecs::DrawingSize size;
    if (output.bytes().size() != sizeof size) return std::nullopt;
    std::memcpy(&size, output.bytes().data(), sizeof size);
    return QSizeF(size.width, size.height);
}

std::optional<raster::RasterImage> drawSvg(Bytes file, QSize size, const WorkControl& control,
                                           std::chrono::milliseconds time) {
    if (!raster::isDecodableSize(size.width(), size.height())) return std::nullopt;
    const QStringList arguments{QStringLiteral("draw-svg"), QString::number(size.width()),
                                QString::number(size.height())};
    SharedMemory output;
    if (!runOver(file, arguments, output, time, control)) return std::nullopt;
    return pictureIn(output.bytes());
}

} // namespace quillabrae::persistence::ImageCodecs
