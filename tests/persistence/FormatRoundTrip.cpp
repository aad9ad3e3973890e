// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FormatRoundTrip.h"

#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"
#include "raster/ImageReader.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QProcess>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillabrae::persistence {
namespace {

using ProjectImageExportService::Background;
using ProjectImageExportService::render;

constexpr double exact = 200.0;
constexpr double lossy = 40.0;
/// Debian's policy forbids ImageMagick longer ones.
constexpr int longestOfImageMagick = 16000;

/// Pillow reads those.
constexpr const char* pillow =
    "/usr/bin/python3 -c 'import sys; from PIL import Image; "
    "Image.open(sys.argv[1]).convert(\"RGB\").save(sys.argv[2], \"ppm\")' \"$1\" \"$2\"";
constexpr const char* pillowRaw =
    "/usr/bin/python3 -c 'import sys; from PIL import Image; "
    "open(sys.argv[2], \"wb\").write(Image.open(sys.argv[1]).convert(\"RGBA\").tobytes())' "
    "\"$1\" \"$2\"";

constexpr auto formats = std::to_array<Format>({
    {SaveFormat::png, "pngcheck -q \"$1\" && convert-im6.q16 \"png:$1\" -depth 8 \"rgba:$2\"",
     exact, longestOfImageMagick, pillowRaw},
    {SaveFormat::jpeg,
     "test \"$(exiftool -s3 -FileType \"$1\")\" = JPEG && convert-im6.q16 \"jpeg:$1\" \"ppm:$2\"",
     lossy, longestOfImageMagick, pillow},
    {SaveFormat::heic, "heif-info \"$1\" | grep -q 'image:' && heif-convert \"$1\" \"$2\"", lossy},
    {SaveFormat::webp, "webpinfo -quiet \"$1\" && dwebp -quiet \"$1\" -o \"$2\"", lossy, 16383},
    {SaveFormat::tiff, "tiffinfo \"$1\" && convert-im6.q16 \"tiff:$1\" \"ppm:$2\"", exact,
     longestOfImageMagick, pillow},
    {SaveFormat::svg, "xmllint --huge --noout \"$1\" && rsvg-convert --unlimited \"$1\" -o \"$2\"",
     exact},
    {SaveFormat::bmp, "convert-im6.q16 \"bmp:$1\" \"ppm:$2\"", exact, longestOfImageMagick, pillow},
    {SaveFormat::gif, "giftext \"$1\" && convert-im6.q16 \"gif:$1\" \"ppm:$2\"", 34.0,
     longestOfImageMagick, pillow},
    {SaveFormat::jpeg2000,
     "opj_dump -i \"$1\" && opj_decompress -i \"$1\" -o \"$2.ppm\" && mv \"$2.ppm\" \"$2\"", lossy},
});

/// A level that swings slowly between 20 and 235.
int wave(double at, double length) {
    constexpr double middle = 127.5;
    constexpr double swing = 107.0;
    constexpr double turn = 6.283185307179586;
    return static_cast<int>(middle + swing * std::sin(turn * at / length));
}

model::PaintLayer gradientLayer(QSize size, int alpha) {
    QImage image(size, QImage::Format_RGBA8888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgba(wave(x, 700), wave(y + 100, 500), wave(x + y, 900), alpha));
    }
    model::PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.bitmapPNGData = raster::encodePng(raster::RasterImage::fromQImage(std::move(image)));
    return layer;
}

/// Over all components of all pixels; infinite for equal pictures.
double psnr(const raster::RasterImage& a, const raster::RasterImage& b) {
    constexpr double greatest = 255.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < a.byteCount(); ++i) {
        const double difference = double(a.bytes()[i]) - double(b.bytes()[i]);
        sum += difference * difference;
    }
    if (sum == 0.0) return std::numeric_limits<double>::infinity();
    return 10.0 * std::log10(greatest * greatest * static_cast<double>(a.byteCount()) / sum);
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// Through Qt, whose reader of PNGs is libpng.
raster::RasterImage readByLibpng(const QString& path) {
    QImageReader reader(path, "png");
    QImageReader::setAllocationLimit(0);
    QImage image = reader.read();
    EXPECT_FALSE(image.isNull()) << reader.errorString().toStdString();
    return raster::RasterImage::fromQImage(std::move(image));
}

raster::RasterImage rawPicture(const QByteArray& bytes, QSize size) {
    EXPECT_EQ(bytes.size(), qsizetype{4} * size.width() * size.height());
    if (bytes.size() != qsizetype{4} * size.width() * size.height()) return {};
    const QImage image(reinterpret_cast<const uchar*>(bytes.constData()), size.width(),
                       size.height(), QImage::Format_RGBA8888);
    return raster::RasterImage::fromQImage(image.copy());
}

} // namespace

void PrintTo(const Format& format, std::ostream* stream) {
    *stream << rawText(format.format).toStdString();
}

void PrintTo(const Picture& picture, std::ostream* stream) {
    *stream << picture.name;
}

std::span<const Format> allFormats() {
    return formats;
}

const Format& formatNamed(SaveFormat format) {
    return *std::ranges::find(formats, format, &Format::format);
}

model::PaintProject projectOf(const Picture& picture) {
    constexpr int translucent = 100;
    constexpr int opaque = 255;
    model::PaintLayer layer = gradientLayer(
        picture.size, picture.contents == Contents::translucent ? translucent : opaque);
    layer.isVisible = picture.contents != Contents::hidden;
    layer.opacity = picture.contents == Contents::halfOpacity ? 0.5 : 1.0;
    if (picture.contents == Contents::empty) layer.bitmapPNGData.reset();
    return samples::project(picture.size, {layer});
}

QString FormatRoundTrip::write(const model::PaintProject& project, SaveFormat format) const {
    const QString path = folder.filePath(QStringLiteral("a picture.") + fileExtension(format));
    ProjectImageExportService::save(project, QUrl::fromLocalFile(path), format);
    return path;
}

void FormatRoundTrip::run(const char* command, const QString& path, const QString& output) const {
    QProcess shell;
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-ec"), QString::fromLatin1(command),
                                            QStringLiteral("sh"), path, output});
    EXPECT_TRUE(shell.waitForFinished(-1) && shell.exitCode() == 0)
        << shell.readAll().toStdString();
}

raster::RasterImage FormatRoundTrip::decoded(const QString& path, const Format& format,
                                             QSize size) const {
    const QString output = folder.filePath(QStringLiteral("decoded.png"));
    QFile::remove(output);
    const bool isLonger = std::max(size.width(), size.height()) > format.longestSide;
    run(isLonger ? format.decodeLonger : format.decode, path, output);
    if (format.format == SaveFormat::png) return rawPicture(contentsOf(output), size);
    return raster::readImage(contentsOf(output)).value_or(raster::RasterImage());
}

void FormatRoundTrip::expectRoundTrip(const model::PaintProject& project,
                                      const Format& format) const {
    const bool keepsAlpha = format.format == SaveFormat::png;
    const raster::RasterImage expected =
        render(project, keepsAlpha ? Background::transparent : Background::white);
    const QString path = write(project, format.format);
    const raster::RasterImage actual =
        decoded(path, format, QSize(expected.width(), expected.height()));
    ASSERT_EQ(actual.width(), expected.width());
    ASSERT_EQ(actual.height(), expected.height());
    const double closeness = psnr(actual, expected);
    EXPECT_GE(closeness, format.leastPsnr);
    RecordProperty("psnr", std::to_string(closeness));
    if (format.format == SaveFormat::png) {
        EXPECT_TRUE(readByLibpng(path) == expected);
    }
}

QStringList FormatRoundTrip::names() const {
    return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace quillabrae::persistence
