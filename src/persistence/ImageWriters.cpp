// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ImageWriters.h"

#include "persistence/FileError.h"
#include "persistence/FileSink.h"
#include "persistence/ImageCodecs.h"
#include "raster/PngCodec.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QImageWriter>

namespace quillabrae::persistence {

using ImageCodecs::Encoding;
using platform::WorkControl;

namespace {

/// The context of this file's texts, for translators.
struct ImageWritersTexts {
    Q_DECLARE_TR_FUNCTIONS(ImageWritersTexts)
};

constexpr int lossyQuality = 92;

[[noreturn]] void failToEncode() {
    throw FileError(ImageWritersTexts::tr("The image could not be encoded."));
}

/// The picture's own pixels as an opaque image, valid while it lives.
QImage opaqueView(const raster::RasterImage& picture) {
    return QImage(picture.bytes().data(), picture.width(), picture.height(),
                  static_cast<qsizetype>(picture.stride()), QImage::Format_RGBX8888);
}

struct QtEncoding {
    const char* format = nullptr;
    /// 0 to 100; -1 leaves it to the encoder.
    int quality = -1;
};

/// Memory that takes nothing more once the work is to stop.
class StoppableBuffer final : public QBuffer {
public:
    explicit StoppableBuffer(const WorkControl& control) : m_control(control) {}

protected:
    qint64 writeData(const char* data, qint64 size) override {
        return m_control.isCancelled() ? -1 : QBuffer::writeData(data, size);
    }

private:
    const WorkControl& m_control;
};

void writeThroughQt(const raster::RasterImage& picture, platform::DurableFile& file,
                    const WorkControl& control, const QtEncoding& encoding) {
    StoppableBuffer buffer(control);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, encoding.format);
    writer.setQuality(encoding.quality);
    const bool isWritten = writer.write(opaqueView(picture));
    control.stopIfCancelled();
    if (!isWritten || buffer.data().isEmpty()) failToEncode();
    file.write(buffer.data());
}

void writeThroughCodec(const raster::RasterImage& picture, platform::DurableFile& file,
                       WorkControl& control, Encoding encoding) {
    if (!ImageCodecs::write(picture, encoding, lossyQuality, file, control)) failToEncode();
}

model::PngBytes encodedPng(const raster::RasterImage& picture) {
    model::PngBytes png = raster::encodePng(picture);
    if (png.isEmpty()) failToEncode();
    return png;
}

} // namespace

void writePng(const raster::RasterImage& picture, platform::DurableFile& file, WorkControl&) {
    file.write(encodedPng(picture).toByteArray());
}

void writeJpeg(const raster::RasterImage& picture, platform::DurableFile& file,
               WorkControl& control) {
    writeThroughQt(picture, file, control, {"jpeg", lossyQuality});
}

void writeHeic(const raster::RasterImage& picture, platform::DurableFile& file,
               WorkControl& control) {
    writeThroughCodec(picture, file, control, Encoding::heic);
}

void writeGif(const raster::RasterImage& picture, platform::DurableFile& file,
              WorkControl& control) {
    writeThroughCodec(picture, file, control, Encoding::gif);
}

void writeJpeg2000(const raster::RasterImage& picture, platform::DurableFile& file,
                   WorkControl& control) {
    writeThroughCodec(picture, file, control, Encoding::jpeg2000);
}

void writeWebP(const raster::RasterImage& picture, platform::DurableFile& file,
               WorkControl& control) {
    if (ImageCodecs::areAvailable())
        writeThroughCodec(picture, file, control, Encoding::webp);
    else
        writeWebPWithEncoder(picture, file, webPEncoder(), QDir::tempPath(), control);
}

void writeTiff(const raster::RasterImage& picture, platform::DurableFile& file,
               WorkControl& control) {
    writeThroughQt(picture, file, control, {"tiff"});
}

void writeBmp(const raster::RasterImage& picture, platform::DurableFile& file,
              WorkControl& control) {
    writeThroughQt(picture, file, control, {"bmp"});
}

void writeSvg(const raster::RasterImage& picture, platform::DurableFile& file, WorkControl&) {
    const model::PngBytes png = encodedPng(picture);
    const QByteArray width = QByteArray::number(picture.width());
    const QByteArray height = QByteArray::number(picture.height());
    FileSink sink(file);
    sink.write(
        QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<svg xmlns=\"http://www.w3.org/2000/svg\""
                   " xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"" +
                   width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + ' ' + height +
                   "\">\n  <image width=\"" + width + "\" height=\"" + height +
                   "\" xlink:href=\"data:image/png;base64,"));
    sink.writeBase64(png.bytes());
    sink.write(QByteArray("\"/>\n</svg>"));
}

} // namespace quillabrae::persistence
