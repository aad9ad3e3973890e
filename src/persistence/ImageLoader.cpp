// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ImageLoader.h"

#include "persistence/ImageCodecs.h"
#include "raster/ImageReader.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <string_view>

namespace quillabrae::persistence {
namespace {

using namespace std::string_view_literals;
using ImageCodecs::Bytes;
using ImageCodecs::Decoding;

constexpr qsizetype markRoom = 16;
/// More than the largest picture of these kinds takes.
constexpr qint64 greatestFile = qint64{1} << 30U;

constexpr auto heifBrands = std::to_array<std::string_view>(
    {"heic", "heix", "heim", "heis", "hevc", "hevx", "mif1", "msf1", "miaf", "avif", "avis"});

constexpr auto jpeg2000Marks =
    std::to_array<std::string_view>({"\0\0\0\x0cjP  \r\n\x87\n"sv, "\xff\x4f\xff\x51"sv});

/// Which of the codecs beside the editor reads a file that begins so; nothing for the other kinds.
std::optional<Decoding> decodingFor(const QByteArray& start) {
    const std::string_view bytes(start.constData(), static_cast<std::size_t>(start.size()));
    constexpr std::size_t typeAt = 4;
    constexpr std::size_t brandAt = 8;
    constexpr std::size_t brandSize = 4;
    if (bytes.size() >= brandAt + brandSize && bytes.substr(typeAt).starts_with("ftyp"sv) &&
        std::ranges::count(heifBrands, bytes.substr(brandAt, brandSize)) > 0)
        return Decoding::heif;
    if (std::ranges::any_of(jpeg2000Marks,
                            [&](std::string_view mark) { return bytes.starts_with(mark); }))
        return Decoding::jpeg2000;
    return std::nullopt;
}

Bytes bytesOf(const char* data, qint64 size) {
    return {reinterpret_cast<const std::uint8_t*>(data), static_cast<std::size_t>(size)};
}

/// With the codec beside the editor. The bytes are asked for when the file is not too large.
template <typename Read>
std::optional<raster::RasterImage> decoded(Decoding decoding, qint64 fileSize, const Read& read,
                                           const platform::WorkControl& control,
                                           raster::ImageRefusal& refusal) {
    refusal = raster::ImageRefusal::beyondLimits;
    if (fileSize > greatestFile) return std::nullopt;
    const QByteArray bytes = read();
    return ImageCodecs::read(bytesOf(bytes.constData(), bytes.size()), decoding, refusal, control);
}

} // namespace

std::optional<raster::RasterImage> loadImageFile(const QString& path,
                                                 const platform::WorkControl& control,
                                                 raster::ImageRefusal* refusal) {
    raster::ImageRefusal unasked{};
    raster::ImageRefusal& reason = refusal != nullptr ? *refusal : unasked;
    reason = raster::ImageRefusal::unreadable;
    // A pipe or a device might never answer.
    if (!QFileInfo(path).isFile()) return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    const auto decoding = decodingFor(file.peek(markRoom));
    if (!decoding) return raster::readImageFile(path, &reason);
    return decoded(
        *decoding, file.size(), [&file] { return file.readAll(); }, control, reason);
}

std::optional<raster::RasterImage> loadImage(const QByteArray& bytes,
                                             const platform::WorkControl& control,
                                             raster::ImageRefusal* refusal) {
    const auto decoding = decodingFor(bytes.first(std::min(bytes.size(), markRoom)));
    if (!decoding) return raster::readImage(bytes, refusal);
    raster::ImageRefusal unasked{};
    return decoded(
        *decoding, bytes.size(), [&bytes] { return bytes; }, control,
        refusal != nullptr ? *refusal : unasked);
}

} // namespace quillabrae::persistence
