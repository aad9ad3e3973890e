// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ImageLoader.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

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
