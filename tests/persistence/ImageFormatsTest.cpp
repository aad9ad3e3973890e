// SPDX-License-Identifier: GPL-3.0-or-later
// Every image format, written by us and read back by programs that are not ours.
#include "persistence/FaultyFileOperations.h"
#include "persistence/FileError.h"
#include "persistence/OrdinaryUser.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"
#include "raster/ImageReader.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <limits>
#include <random>

namespace quillabrae::persistence {
namespace {

using ProjectImageExportService::Background;
using ProjectImageExportService::render;

enum class Contents { opaque, translucent, hidden, halfOpacity, empty };

struct Picture {
    const char* name = nullptr;
    QSize size;
    Contents contents = Contents::opaque;
};

struct Format {
    SaveFormat format = SaveFormat::png;
    /// The shell command that makes $2, a PNG or PPM, of $1. It fails for a file that is not in
    /// order.
    const char* decode = nullptr;
    /// In decibels; above what no file can have means every pixel is exact.
    double leastPsnr = 0.0;
    int longestSide = 65535;
};

constexpr double exact = 200.0;
constexpr double lossy = 40.0;

void PrintTo(const Format& format, std::ostream* stream) {
    *stream << rawText(format.format).toStdString();
}

void PrintTo(const Picture& picture, std::ostream* stream) {
    *stream << picture.name;
}

// ImageMagick is not asked for pictures of 20,000 pixels, which Debian's policy forbids it.
constexpr auto formats = std::to_array<Format>({
    {SaveFormat::png, "pngcheck -q \"$1\" && cp \"$1\" \"$2\"", exact},
    {SaveFormat::jpeg,
     "test \"$(exiftool -s3 -FileType \"$1\")\" = JPEG && convert-im6.q16 \"jpeg:$1\" \"ppm:$2\"",
     lossy, 16000},
    {SaveFormat::heic, "heif-info \"$1\" | grep -q 'image:' && heif-convert \"$1\" \"$2\"", lossy},
    {SaveFormat::webp, "webpinfo -quiet \"$1\" && dwebp -quiet \"$1\" -o \"$2\"", lossy, 16383},
    {SaveFormat::tiff, "tiffinfo \"$1\" && convert-im6.q16 \"tiff:$1\" \"ppm:$2\"", exact, 16000},
    {SaveFormat::svg, "xmllint --huge --noout \"$1\" && rsvg-convert --unlimited \"$1\" -o \"$2\"",
     exact},
    {SaveFormat::bmp, "convert-im6.q16 \"bmp:$1\" \"ppm:$2\"", exact, 16000},
    {SaveFormat::gif, "giftext \"$1\" && convert-im6.q16 \"gif:$1\" \"ppm:$2\"", 34.0, 16000},
    {SaveFormat::jpeg2000,
     "opj_dump -i \"$1\" && opj_decompress -i \"$1\" -o \"$2.ppm\" && mv \"$2.ppm\" \"$2\"", lossy},
});

constexpr auto pictures = std::to_array<Picture>({
    {"Point", {1, 1}, Contents::opaque},
    {"Opaque", {3, 257}, Contents::opaque},
    {"Translucent", {67, 45}, Contents::translucent},
    {"Hidden", {67, 45}, Contents::hidden},
    {"HalfOpacity", {67, 45}, Contents::halfOpacity},
    {"Empty", {67, 45}, Contents::empty},
    {"Wide", {20000, 40}, Contents::opaque},
});

/// A level that swings slowly between 20 and 235.
int wave(double at, double length) {
    constexpr double middle = 127.5;
    constexpr double swing = 107.0;
    constexpr double turn = 6.283185307179586;
    return static_cast<int>(middle + swing * std::sin(turn * at / length));
}

/// Smooth colours at one alpha.
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

class ImageFormats : public testing::Test {
protected:
    QString write(const model::PaintProject& project, SaveFormat format) const {
        const QString path = folder.filePath(QStringLiteral("a picture.") + fileExtension(format));
        ProjectImageExportService::save(project, QUrl::fromLocalFile(path), format);
        return path;
    }
    raster::RasterImage decoded(const QString& path, const Format& format) const {
        const QString output = folder.filePath(QStringLiteral("decoded.png"));
        QFile::remove(output);
        QProcess shell;
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start(QStringLiteral("/bin/sh"),
                    {QStringLiteral("-ec"), QString::fromLatin1(format.decode),
                     QStringLiteral("sh"), path, output});
        EXPECT_TRUE(shell.waitForFinished(-1) && shell.exitCode() == 0)
            << shell.readAll().toStdString();
        QFile file(output);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return raster::readImage(file.readAll()).value_or(raster::RasterImage());
    }
    void expectRoundTrip(const model::PaintProject& project, const Format& format) const {
        const bool keepsAlpha = format.format == SaveFormat::png;
        const raster::RasterImage expected =
            render(project, keepsAlpha ? Background::transparent : Background::white);
        const raster::RasterImage actual = decoded(write(project, format.format), format);
        ASSERT_EQ(actual.width(), expected.width());
        ASSERT_EQ(actual.height(), expected.height());
        const double closeness = psnr(actual, expected);
        EXPECT_GE(closeness, format.leastPsnr);
        RecordProperty("psnr", std::to_string(closeness));
    }

    static void expectSize(const QString& path, QSize size) {
        QProcess exiftool;
        exiftool.start(QStringLiteral("exiftool"),
                       {QStringLiteral("-s3"), QStringLiteral("-ImageSize"), path});
        EXPECT_TRUE(exiftool.waitForFinished(-1));
        EXPECT_EQ(exiftool.readAll().trimmed(),
                  QByteArray::number(size.width()) + 'x' + QByteArray::number(size.height()));
    }
    std::string saveError(SaveFormat format, const QString& path,
                          platform::FileOperations& operations) const {
        try {
            ProjectImageExportService::save(samples::twoLayers(), QUrl::fromLocalFile(path), format,
                                            operations);
        } catch (const FileError& error) {
            return error.description().toStdString();
        }
        return "no error";
    }
    QStringList names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
};

class EveryFormat : public ImageFormats,
                    public testing::WithParamInterface<std::tuple<Format, Picture>> {};

TEST_P(EveryFormat, IsReadBackByOthers) {
    const auto& [format, picture] = GetParam();
    if (format.format == SaveFormat::webp && picture.size.width() > format.longestSide)
        GTEST_SKIP() << "the format has no such picture";
    if (picture.size.width() <= format.longestSide)
        expectRoundTrip(projectOf(picture), format);
    else
        expectSize(write(projectOf(picture), format.format), picture.size);
}

INSTANTIATE_TEST_SUITE_P(, EveryFormat,
                         testing::Combine(testing::ValuesIn(formats), testing::ValuesIn(pictures)),
                         [](const auto& info) {
                             return rawText(std::get<0>(info.param).format).toStdString() +
                                    std::get<1>(info.param).name;
                         });

TEST_F(ImageFormats, LargePicturesAreReadBackByOthers) {
    const model::PaintProject project =
        projectOf({"Large", QSize(4096, 4096), Contents::translucent});
    expectRoundTrip(project, formats[0]);
    expectRoundTrip(project, formats[1]);
}

TEST_F(ImageFormats, AWebPTooLongForItsFormatSaysSoAndLeavesNoFile) {
    const model::PaintProject project = projectOf({"Wide", QSize(16384, 1), Contents::opaque});
    EXPECT_THROW(write(project, SaveFormat::webp), FileError);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ImageFormats, APhotographOfGradientsKeepsItsLookAsAGif) {
    constexpr QSize size(640, 480);
    QImage image(size, QImage::Format_RGBA8888);
    std::minstd_rand random(1);
    std::normal_distribution<double> grain(0.0, 2.0);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const double right = double(x) / size.width();
            const double down = double(y) / size.height();
            const double noise = grain(random);
            image.setPixelColor(x, y,
                                QColor(static_cast<int>(40.0 + 180.0 * right + noise),
                                       static_cast<int>(60.0 + 150.0 * down + noise),
                                       static_cast<int>(200.0 - 140.0 * right * down + noise)));
        }
    }
    model::PaintLayer layer;
    layer.bitmapPNGData = raster::encodePng(raster::RasterImage::fromQImage(std::move(image)));
    expectRoundTrip(samples::project(size, {layer}), formats[7]);
}

class EveryFailure : public ImageFormats, public testing::WithParamInterface<Format> {
protected:
    SaveFormat format() const { return GetParam().format; }
    QString path() const {
        return folder.filePath(QStringLiteral("a picture.") + fileExtension(format()));
    }
    void writeOldFile() const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("old");
    }
    void expectOldFileAlone() const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), QByteArray("old"));
        EXPECT_EQ(names().size(), 1);
    }
};

TEST_P(EveryFailure, AFullDiskLeavesTheOldFile) {
    writeOldFile();
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("write")) throw platform::FileOperationError(path(), ENOSPC);
    };
    EXPECT_THAT(saveError(format(), path(), operations),
                testing::HasSubstr("could not be written: No space left on device."));
    expectOldFileAlone();
}

TEST_P(EveryFailure, AProtectedFileStays) {
    writeOldFile();
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::ReadOther);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner |
                                             QFile::ReadOther | QFile::WriteOther |
                                             QFile::ExeOther);
    {
        const OrdinaryUser user;
        EXPECT_THAT(saveError(format(), path(), platform::systemFileOperations()),
                    testing::HasSubstr("Permission denied"));
    }
    expectOldFileAlone();
}

TEST_P(EveryFailure, AFolderThatIsGoneIsTold) {
    const QString lost = folder.filePath(QStringLiteral("gone/a.")) + fileExtension(format());
    EXPECT_THAT(saveError(format(), lost, platform::systemFileOperations()),
                testing::HasSubstr("No such file or directory"));
    EXPECT_EQ(names(), QStringList());
}

TEST_P(EveryFailure, AFolderInTheWayIsTold) {
    ASSERT_TRUE(QDir().mkpath(path() + QStringLiteral("/kept")));
    EXPECT_THAT(saveError(format(), path(), platform::systemFileOperations()),
                testing::HasSubstr("Is a directory"));
    EXPECT_EQ(names().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(, EveryFailure, testing::ValuesIn(formats),
                         [](const auto& info) { return rawText(info.param.format).toStdString(); });

} // namespace
} // namespace quillabrae::persistence
