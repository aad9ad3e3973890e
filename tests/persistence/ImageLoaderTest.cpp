// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ImageLoader.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"
#include "support/PeakMemory.h"

#include <QColorSpace>
#include <QFile>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>

namespace quillabrae::persistence {
namespace {

using raster::RasterImage;

void expectNear(const RasterImage& image, int x, int y, const QColor& color, int tolerance) {
    const std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
    EXPECT_LE(std::abs(pixel[0] - color.red()), tolerance);
    EXPECT_LE(std::abs(pixel[1] - color.green()), tolerance);
    EXPECT_LE(std::abs(pixel[2] - color.blue()), tolerance);
    EXPECT_LE(std::abs(pixel[3] - color.alpha()), tolerance);
}

class ImageLoading : public testing::Test {
protected:
    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
    QByteArray saved(SaveFormat format) const {
        const QString file = path("picture");
        ProjectImageExportService::save(samples::twoLayers(QSize(64, 48)),
                                        QUrl::fromLocalFile(file), format);
        return contents(file);
    }
    static QByteArray contents(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    void expectBeyondLimits(const QByteArray& bytes) const {
        raster::ImageRefusal refusal{};
        EXPECT_FALSE(loadImage(bytes, {}, &refusal));
        EXPECT_EQ(refusal, raster::ImageRefusal::beyondLimits);
        QFile file(path("large"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        refusal = raster::ImageRefusal::unreadable;
        EXPECT_FALSE(loadImageFile(path("large"), {}, &refusal));
        EXPECT_EQ(refusal, raster::ImageRefusal::beyondLimits);
    }
    static void run(const char* program, const QStringList& arguments) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QString::fromLatin1(program), arguments);
        EXPECT_TRUE(process.waitForFinished(-1) && process.exitCode() == 0)
            << process.readAll().toStdString();
    }

    QTemporaryDir folder;
};

TEST_F(ImageLoading, EveryFormatThatIsWrittenIsReadAgain) {
    for (const SaveFormat format : allSaveFormats()) {
        if (format == SaveFormat::project || format == SaveFormat::svg) continue;
        const auto image = loadImage(saved(format));
        ASSERT_TRUE(image) << rawText(format).toStdString();
        ASSERT_EQ(image->width(), 64);
        ASSERT_EQ(image->height(), 48);
        const QColor background(format == SaveFormat::png ? QColor(0, 0, 0, 0) : Qt::white);
        expectNear(*image, 8, 8, Qt::red, 4);
        expectNear(*image, 56, 40, background, 4);
        EXPECT_TRUE(*loadImageFile(path("picture")) == *image);
    }
}

TEST_F(ImageLoading, OtherKindsOfJpeg2000AreRead) {
    QImage translucent(64, 64, QImage::Format_RGBA8888);
    translucent.fill(QColor(200, 100, 50, 128));
    ASSERT_TRUE(translucent.save(path("alpha.png")));
    run("opj_compress",
        {QStringLiteral("-i"), path("alpha.png"), QStringLiteral("-o"), path("alpha.jp2")});
    const auto alpha = loadImageFile(path("alpha.jp2"));
    ASSERT_TRUE(alpha);
    expectNear(*alpha, 20, 15, QColor(100, 50, 25, 128), 1);

    QImage grey(64, 64, QImage::Format_Grayscale16);
    grey.fill(QColor(90, 90, 90));
    ASSERT_TRUE(grey.save(path("grey.png")));
    run("opj_compress",
        {QStringLiteral("-i"), path("grey.png"), QStringLiteral("-o"), path("grey.j2k")});
    const auto codestream = loadImageFile(path("grey.j2k"));
    ASSERT_TRUE(codestream);
    expectNear(*codestream, 20, 15, QColor(90, 90, 90), 1);
}

TEST_F(ImageLoading, PicturesBeyondTheLimitsAreRefused) {
    QByteArray file = saved(SaveFormat::jpeg2000);
    // The size as the codestream states it, after its marker, length and profile.
    const qsizetype size = file.indexOf("\xff\x51") + 6;
    ASSERT_GT(size, 6);
    const QByteArray tooMuch("\0\0\x9c\x40", 4);
    file.replace(size, 4, tooMuch);
    // The box around it, which states its height first, has to agree.
    file.replace(file.indexOf("ihdr") + 8, 4, tooMuch);
    expectBeyondLimits(file);

    QByteArray heic = saved(SaveFormat::heic);
    // In the box of the picture's extents, after its type, version and flags.
    for (qsizetype box = heic.indexOf("ispe"); box > 0; box = heic.indexOf("ispe", box + 4))
        heic.replace(box + 8, 4, tooMuch);
    expectBeyondLimits(heic);
}

TEST_F(ImageLoading, WhatIsBrokenIsNotCalledTooLarge) {
    for (const SaveFormat format : {SaveFormat::heic, SaveFormat::jpeg2000, SaveFormat::bmp}) {
        auto refusal = raster::ImageRefusal::beyondLimits;
        EXPECT_FALSE(loadImage(saved(format).first(40), {}, &refusal));
        EXPECT_EQ(refusal, raster::ImageRefusal::unreadable) << rawText(format).toStdString();
    }
    auto refusal = raster::ImageRefusal::beyondLimits;
    EXPECT_FALSE(loadImageFile(path("absent.heic"), {}, &refusal));
    EXPECT_EQ(refusal, raster::ImageRefusal::unreadable);
}

TEST_F(ImageLoading, WhatALibraryEndsItsProcessOverIsUnreadable) {
    // A picture that is said to be one derived from others and is coded itself.
    const QByteArray heic = QByteArray::fromBase64(
        "AAAAGGZ0eXBoZWljAAAAAG1pZjFoZWljAAABrW1ldGEAAAAAAAAAIWhkbHIAAAAAAAAAAHBpY3QAAAAAAAEA"
        "AAAAAAAAAAAADnBpdG0AAAAAAAIAAAAQaWRhdAAAAAAAGAARAAAAOGlsb2MBAAAAREAAAgABAAAAAAAAAc0A"
        "AQAAAAAAAAJkAAIAAQAAAAAAAAABAAAAAAAAAAgAAAA4aWluZgAAAAAAAgAAABVpZgACZW4AAQABAABodmMx"
        "AAAAABVpbmZlAgAAAAACAABpZGVuAAAAANhpcHJwAAAAtmlwY28AAAB2aHZjQwEDcAAAAAAAAAAAAB7wAPz9"
        "+PgAAA8DIAABABhAAQwB//8DcAAAAwCQAAADAAADAB66AkAhAAEAKkIBAQNwAAADAJAAAF0AAAMAHqAggQWW"
        "6W6S5uBAQMCAAAADAIAAAAMAhCIAAQAGRAHAcYMSAAAAFGlzcGUAAAAAAAAAQAAAAEAAAAAUaXNwZQAAAAAA"
        "AAAYAAAAEQAAABBwaXhpAAAAAAMICAgAAAAaaXBtYQAAAAAAAAACAAECgQIAAgIDhAAAABppcmVmAAAAAAAA"
        "AA5kaW1nAAIBAAEAAQB0w7NNMA==");
    auto refusal = raster::ImageRefusal::beyondLimits;
    EXPECT_FALSE(loadImage(heic, {}, &refusal));
    EXPECT_EQ(refusal, raster::ImageRefusal::unreadable);
}

/// Red at the top left, blue at the top right, white below, as a HEIC that others made.
class TurnedHeic : public ImageLoading {
protected:
    void SetUp() override {
        QImage picture(64, 48, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.fillRect(0, 0, 32, 24, Qt::red);
        painter.fillRect(32, 0, 32, 24, Qt::blue);
        painter.end();
        ASSERT_TRUE(picture.save(path("picture.jpg"), "jpeg", 95));
    }
    QByteArray heic() const {
        run("heif-enc", {QStringLiteral("-q"), QStringLiteral("95"), path("picture.jpg"),
                         QStringLiteral("-o"), path("picture.heic")});
        return contents(path("picture.heic"));
    }
    /// The file with another property in the place of the one that tells the depth of its pixels.
    QByteArray heicWith(const char* property, char value) const {
        QByteArray file = heic();
        const qsizetype depth = file.indexOf("pixi");
        EXPECT_GT(depth, 0);
        file.replace(depth, 4, property, 4);
        file[depth + 4] = value;
        return file;
    }
    static void expectCorners(const std::optional<RasterImage>& image, QSize size,
                              const std::array<QColor, 4>& corners) {
        ASSERT_TRUE(image);
        ASSERT_EQ(image->width(), size.width());
        ASSERT_EQ(image->height(), size.height());
        constexpr int inset = 8;
        constexpr int tolerance = 6;
        const int right = size.width() - inset;
        const int bottom = size.height() - inset;
        expectNear(*image, inset, inset, corners[0], tolerance);
        expectNear(*image, right, inset, corners[1], tolerance);
        expectNear(*image, inset, bottom, corners[2], tolerance);
        expectNear(*image, right, bottom, corners[3], tolerance);
    }

    static constexpr QSize lying{64, 48};
    static constexpr QSize standing{48, 64};
    const QColor red = Qt::red;
    const QColor blue = Qt::blue;
    const QColor white = Qt::white;
};

TEST_F(TurnedHeic, IsTurnedAntiClockwiseByItsQuarters) {
    expectCorners(loadImage(heicWith("irot", 0)), lying, {red, blue, white, white});
    expectCorners(loadImage(heicWith("irot", 1)), standing, {blue, white, red, white});
    expectCorners(loadImage(heicWith("irot", 2)), lying, {white, white, blue, red});
    expectCorners(loadImage(heicWith("irot", 3)), standing, {white, red, white, blue});
}

TEST_F(TurnedHeic, IsMirroredUpsideDownOrSideways) {
    expectCorners(loadImage(heicWith("imir", 0)), lying, {white, white, red, blue});
    expectCorners(loadImage(heicWith("imir", 1)), lying, {blue, red, white, white});
}

/// The format says that the note of the camera only tells what the file's own properties do.
TEST_F(TurnedHeic, IsNotTurnedAgainByWhatTheCameraNoted) {
    run("exiftool", {QStringLiteral("-q"), QStringLiteral("-n"), QStringLiteral("-Orientation=6"),
                     path("picture.jpg")});
    expectCorners(loadImage(heic()), lying, {red, blue, white, white});
    expectCorners(loadImage(heicWith("irot", 3)), standing, {white, red, white, blue});
}

/// The red of sRGB in the colours of Display P3, as "profile.jpg" and "profile.heic".
class WideColours : public ImageLoading {
protected:
    void SetUp() override {
        QImage picture(64, 48, QImage::Format_RGB32);
        picture.fill(redInP3);
        picture.setColorSpace(QColorSpace::DisplayP3);
        ASSERT_TRUE(picture.save(path("profile.jpg"), "jpeg", 100));
        run("heif-enc", {QStringLiteral("-q"), QStringLiteral("98"), path("profile.jpg"),
                         QStringLiteral("-o"), path("profile.heic")});
    }
    /// The HEIC file with the numbers of a colour space in the place of the profile.
    QByteArray heicWithPrimaries(char primaries) const {
        QByteArray file = contents(path("profile.heic"));
        const qsizetype profile = file.indexOf("colrprof");
        EXPECT_GT(profile, 0);
        constexpr char srgbCurve = 13;
        constexpr char matrixOfBt601 = 6;
        const std::array<char, 15> numbers{'c', 'o',           'l',   'r',       'n', 'c',
                                           'l', 'x',           0,     primaries, 0,   srgbCurve,
                                           0,   matrixOfBt601, '\x80'};
        file.replace(profile, numbers.size(), numbers.data(), numbers.size());
        return file;
    }

    const QColor redInP3{234, 51, 35};
};

TEST_F(WideColours, OfAProfileAreBroughtToSrgb) {
    for (const char* name : {"profile.heic", "profile.jpg"}) {
        const auto image = loadImageFile(path(name));
        ASSERT_TRUE(image) << name;
        SCOPED_TRACE(name);
        expectNear(*image, 20, 20, Qt::red, 6);
    }
}

TEST_F(WideColours, OfAHeicsNumbersAreBroughtToSrgb) {
    constexpr char bt709 = 1;
    constexpr char p3 = 12;
    const auto narrow = loadImage(heicWithPrimaries(bt709));
    ASSERT_TRUE(narrow);
    expectNear(*narrow, 20, 20, redInP3, 6);
    const auto wide = loadImage(heicWithPrimaries(p3));
    ASSERT_TRUE(wide);
    expectNear(*wide, 20, 20, Qt::red, 6);
}

TEST_F(ImageLoading, OfAnAnimationTheFirstFrameIsRead) {
    QStringList frames;
    for (const QColor& color : {QColor(Qt::red), QColor(Qt::green), QColor(Qt::blue)}) {
        QImage frame(40, 30, QImage::Format_RGB32);
        frame.fill(color);
        frames << path(qPrintable(QStringLiteral("%1.png").arg(frames.size())));
        ASSERT_TRUE(frame.save(frames.last()));
    }
    for (const char* name : {"moving.gif", "moving.webp", "pages.tiff"}) {
        run("convert-im6.q16", QStringList{QStringLiteral("-delay"), QStringLiteral("10")} +
                                   frames + QStringList{path(name)});
        const auto image = loadImageFile(path(name));
        ASSERT_TRUE(image) << name;
        SCOPED_TRACE(name);
        EXPECT_EQ(image->width(), 40);
        expectNear(*image, 20, 15, Qt::red, 4);
    }
}

TEST_F(ImageLoading, DeepPrintedAndIndexedPicturesAreRead) {
    const QString red = QStringLiteral("xc:rgb(200,40,20)");
    const QString size = QStringLiteral("40x30");
    const struct {
        const char* name = nullptr;
        QStringList options;
        int tolerance = 0;
    } cases[] = {
        {"deep.png", {QStringLiteral("-depth"), QStringLiteral("16")}, 0},
        {"deep.tiff", {QStringLiteral("-depth"), QStringLiteral("16")}, 0},
        {"deep.ppm", {QStringLiteral("-depth"), QStringLiteral("16")}, 0},
        {"print.jpg",
         {QStringLiteral("-colorspace"), QStringLiteral("CMYK"), QStringLiteral("-quality"),
          QStringLiteral("100")},
         4},
        {"palette.png", {QStringLiteral("-type"), QStringLiteral("Palette")}, 0},
        {"palette.gif", {QStringLiteral("-type"), QStringLiteral("Palette")}, 0},
        {"palette.bmp", {QStringLiteral("-type"), QStringLiteral("Palette")}, 0},
        {"palette.tiff", {QStringLiteral("-type"), QStringLiteral("Palette")}, 0},
    };
    for (const auto& entry : cases) {
        run("convert-im6.q16", QStringList{QStringLiteral("-size"), size, red} + entry.options +
                                   QStringList{path(entry.name)});
        const auto image = loadImageFile(path(entry.name));
        ASSERT_TRUE(image) << entry.name;
        SCOPED_TRACE(entry.name);
        EXPECT_EQ(image->width(), 40);
        EXPECT_EQ(image->height(), 30);
        expectNear(*image, 20, 15, QColor(200, 40, 20), entry.tolerance);
    }
}

/// Bytes of a file so many after a mark, where it says how large its picture is.
struct Patch {
    QByteArray mark;
    qsizetype offset = 0;
    QByteArray bytes;
};

struct TooLarge {
    SaveFormat format = SaveFormat::png;
    std::vector<Patch> patches;
};

TEST_F(ImageLoading, PicturesBeyondTheLimitsAreRefusedBeforeThereIsMemoryForThem) {
    const QByteArray large("\0\0\x75\x30\0\0\x75\x30", 8);
    const TooLarge cases[] = {
        {SaveFormat::png, {{"IHDR", 4, large}}},
        {SaveFormat::jpeg,
         {{QByteArray("\xff\xc0\0\x11\x08", 5), 5, QByteArray("\xfd\xe8\xfd\xe8")}}},
        {SaveFormat::gif, {{"GIF8", 6, QByteArray("\xff\xfe\xff\xfe")}}},
        {SaveFormat::bmp, {{"BM", 18, QByteArray("\x30\x75\0\0\x30\x75\0\0", 8)}}},
        {SaveFormat::tiff,
         {{QByteArray("\0\1\3\0\1\0\0\0", 8), 8, QByteArray("\x30\x75")},
          {QByteArray("\1\1\3\0\1\0\0\0", 8), 8, QByteArray("\x30\x75")}}},
    };
    for (const auto& [format, patches] : cases) {
        SCOPED_TRACE(rawText(format).toStdString());
        QByteArray file = saved(format);
        for (const Patch& patch : patches) {
            const qsizetype mark = file.indexOf(patch.mark);
            ASSERT_GE(mark, 0);
            file.replace(mark + patch.offset, patch.bytes.size(), patch.bytes);
        }
        const tests::PeakMemory memory;
        EXPECT_FALSE(loadImage(file));
        EXPECT_LT(memory.growth(), qint64{64} << 20U);
    }
}

TEST_F(ImageLoading, TornFilesAreRefusedOrBoundedInSize) {
    for (const SaveFormat format : {SaveFormat::heic, SaveFormat::jpeg2000}) {
        const QByteArray file = saved(format);
        for (const qsizetype size : {qsizetype{13}, file.size() / 3, file.size() - 20}) {
            const auto image = loadImage(file.first(size));
            if (!image) continue;
            EXPECT_EQ(image->width(), 64);
            EXPECT_EQ(image->height(), 48);
        }
    }
    EXPECT_FALSE(
        loadImage("\0\0\0\x18"
                  "ftypheic"));
    EXPECT_FALSE(loadImage({}));
    EXPECT_FALSE(loadImage("plain text"));
}

TEST_F(ImageLoading, WhatIsNoFileIsNotWaitedFor) {
    ASSERT_EQ(::mkfifo(path("pipe").toLocal8Bit().constData(), 0600), 0);
    EXPECT_FALSE(loadImageFile(path("pipe")));
    EXPECT_FALSE(loadImageFile(folder.path()));
    EXPECT_FALSE(loadImageFile(path("absent.heic")));
    EXPECT_FALSE(loadImageFile(QStringLiteral("/dev/zero")));
}

TEST_F(ImageLoading, AUserWhoCancelsGetsNoPicture) {
    const QByteArray file = saved(SaveFormat::heic);
    platform::WorkControl control;
    control.cancel();
    EXPECT_THROW(loadImage(file, control), platform::WorkCancelled);
}

} // namespace
} // namespace quillabrae::persistence
