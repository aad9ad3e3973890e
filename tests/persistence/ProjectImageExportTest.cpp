// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FaultyFileOperations.h"
#include "persistence/FileError.h"
#include "persistence/ImageWriters.h"
#include "persistence/ProjectFileService.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace quillabrae::persistence {
namespace {

using ProjectImageExportService::Background;
using ProjectImageExportService::render;
using ::testing::HasSubstr;

QColor pixel(const raster::RasterImage& image, int x, int y) {
    return image.toQImage().pixelColor(x, y);
}

void expectNear(QColor actual, QColor expected, int tolerance) {
    EXPECT_NEAR(actual.red(), expected.red(), tolerance);
    EXPECT_NEAR(actual.green(), expected.green(), tolerance);
    EXPECT_NEAR(actual.blue(), expected.blue(), tolerance);
    EXPECT_NEAR(actual.alpha(), expected.alpha(), tolerance);
}

TEST(Flattening, AHiddenLayerDoesNotShow) {
    model::PaintProject project = samples::twoLayers();
    project.layers[1].isVisible = false;
    EXPECT_EQ(pixel(render(project, Background::white), 0, 0), QColor(Qt::white));
}

TEST(Flattening, ALayerAtHalfOpacityShowsAtHalfStrength) {
    model::PaintProject project = samples::twoLayers();
    project.layers[1].opacity = 0.5;
    expectNear(pixel(render(project, Background::white), 0, 0), QColor(255, 127, 127), 1);
    expectNear(pixel(render(project, Background::transparent), 0, 0), QColor(255, 0, 0, 128), 1);
}

TEST(Flattening, LaterLayersLieOverEarlierOnes) {
    const QSize size(4, 4);
    const model::PaintProject project =
        samples::project(size, {samples::halfLayer(QStringLiteral("a"), size, Qt::red),
                                samples::halfLayer(QStringLiteral("b"), size, Qt::blue)});
    EXPECT_EQ(pixel(render(project, Background::transparent), 0, 0), QColor(Qt::blue));
}

TEST(Flattening, WhereNothingIsTheBackgroundShows) {
    const model::PaintProject project = samples::twoLayers();
    EXPECT_EQ(pixel(render(project, Background::white), 7, 5), QColor(Qt::white));
    EXPECT_EQ(pixel(render(project, Background::transparent), 7, 5).alpha(), 0);
}

TEST(Flattening, ACanvasIsRoundedToWholePixelsAndKeepsItsSize) {
    model::PaintProject project = samples::twoLayers();
    project.canvasWidth = 10.4;
    project.canvasHeight = 0.2;
    const raster::RasterImage picture = render(project, Background::white);
    EXPECT_EQ(picture.width(), 10);
    EXPECT_EQ(picture.height(), 1);
    EXPECT_EQ(picture.logicalSize(), QSizeF(10.4, 0.2));
}

TEST(Flattening, FloatingPixelsAreNotPartOfThePicture) {
    model::PaintProject project = samples::twoLayers();
    project.floatingSelection =
        model::FloatingPixelSelection{*project.layers[1].bitmapPNGData, 8, 6, project.layers[0].id};
    project.layers[1].bitmapPNGData.reset();
    EXPECT_EQ(pixel(render(project, Background::white), 0, 0), QColor(Qt::white));
}

TEST(Flattening, BytesThatAreNoPictureShowNothing) {
    model::PaintProject project = samples::twoLayers();
    project.layers[1].bitmapPNGData = model::PngBytes("no picture");
    EXPECT_EQ(pixel(render(project, Background::white), 0, 0), QColor(Qt::white));
}

class Exporting : public ::testing::Test {
protected:
    QString file(SaveFormat format) const {
        return folder.filePath(QStringLiteral("out put.") + fileExtension(format));
    }
    QString save(const model::PaintProject& project, SaveFormat format) const {
        ProjectImageExportService::save(project, QUrl::fromLocalFile(file(format)), format);
        return file(format);
    }
    std::string saveError(const model::PaintProject& project, SaveFormat format,
                          platform::FileOperations& operations) const {
        try {
            ProjectImageExportService::save(project, QUrl::fromLocalFile(file(format)), format,
                                            operations);
        } catch (const FileError& error) {
            return error.description().toStdString();
        }
        return "no error";
    }
    std::string saveError(const model::PaintProject& project, SaveFormat format) const {
        return saveError(project, format, platform::systemFileOperations());
    }
    QStringList names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QByteArray outputOf(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return process.readAllStandardOutput();
    }

    QTemporaryDir folder;
};

struct Expectation {
    SaveFormat format;
    /// As ImageMagick calls it.
    const char* name;
    /// How far a colour may be off.
    int tolerance;
};

class EachFormat : public Exporting, public ::testing::WithParamInterface<Expectation> {
protected:
    SaveFormat format() const { return GetParam().format; }
    QColor background() const {
        return format() == SaveFormat::png ? QColor(Qt::transparent) : QColor(Qt::white);
    }
};

TEST_P(EachFormat, IsReadBackByQtWithItsPixels) {
    const QString path = save(samples::twoLayers(QSize(64, 48)), format());
    QImageReader reader(path);
    const QImage image = reader.read();
    ASSERT_EQ(image.size(), QSize(64, 48)) << qPrintable(reader.errorString());
    expectNear(image.pixelColor(8, 8), Qt::red, GetParam().tolerance);
    expectNear(image.pixelColor(56, 40), background(), GetParam().tolerance);
}

TEST_P(EachFormat, IsReadBackByImageMagickWithItsPixels) {
    const QString path = save(samples::twoLayers(QSize(64, 48)), format());
    const QByteArray facts =
        outputOf(QStringLiteral("identify"),
                 {QStringLiteral("-format"),
                  QStringLiteral("%m %w %h %[fx:round(255*p{8,8}.r)] %[fx:round(255*p{8,8}.g)] "
                                 "%[fx:round(255*p{8,8}.a)] %[fx:round(255*p{56,40}.g)] "
                                 "%[fx:round(255*p{56,40}.a)]"),
                  path});
    const QList<QByteArray> words = facts.split(' ');
    ASSERT_EQ(words.size(), 8) << facts.toStdString();
    EXPECT_EQ(words[0], QByteArray(GetParam().name));
    EXPECT_EQ(words[1], QByteArray("64"));
    EXPECT_EQ(words[2], QByteArray("48"));
    const auto number = [&](qsizetype index) { return words[index].toInt(); };
    EXPECT_NEAR(number(3), 255, GetParam().tolerance);
    EXPECT_NEAR(number(4), 0, GetParam().tolerance);
    EXPECT_EQ(number(5), 255);
    if (format() != SaveFormat::png) {
        EXPECT_NEAR(number(6), 255, GetParam().tolerance);
    }
    EXPECT_EQ(number(7), background().alpha());
}

TEST_P(EachFormat, OfAnEmptyCanvasIsWhiteUnlessItKeepsTransparency) {
    model::PaintProject project = samples::twoLayers(QSize(5, 3));
    project.layers[1].bitmapPNGData.reset();
    const QImage image(save(project, format()));
    ASSERT_EQ(image.size(), QSize(5, 3));
    EXPECT_EQ(image.pixelColor(2, 1), background());
}

TEST_P(EachFormat, ReplacesAnOldFileOrLeavesItAlone) {
    const QString path = save(samples::twoLayers(QSize(3, 3)), format());
    const QByteArray before = contents(path);
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("write")) throw platform::FileOperationError(path, ENOSPC);
    };
    EXPECT_THAT(saveError(samples::twoLayers(QSize(9, 9)), format(), operations),
                HasSubstr("No space left on device"));
    EXPECT_EQ(contents(path), before);
    EXPECT_EQ(names().size(), 1);
    save(samples::twoLayers(QSize(9, 9)), format());
    EXPECT_EQ(QImage(path).size(), QSize(9, 9));
    EXPECT_EQ(names().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Formats, EachFormat,
                         ::testing::Values(Expectation{SaveFormat::png, "PNG", 0},
                                           Expectation{SaveFormat::jpeg, "JPEG", 3},
                                           Expectation{SaveFormat::webp, "WEBP", 4},
                                           Expectation{SaveFormat::tiff, "TIFF", 0},
                                           Expectation{SaveFormat::bmp, "BMP3", 0}),
                         [](const auto& expectation) {
                             return rawText(expectation.param.format).toStdString();
                         });

TEST_F(Exporting, AnSvgHoldsThePictureAsOnePng) {
    const model::PaintProject project = samples::twoLayers(QSize(64, 48));
    const QByteArray text = contents(save(project, SaveFormat::svg));
    const QByteArray head =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "width=\"64\" height=\"48\" viewBox=\"0 0 64 48\">\n"
        "  <image width=\"64\" height=\"48\" xlink:href=\"data:image/png;base64,";
    const QByteArray tail = "\"/>\n</svg>";
    ASSERT_TRUE(text.startsWith(head));
    ASSERT_TRUE(text.endsWith(tail));
    const QByteArray base64 = text.mid(head.size(), text.size() - head.size() - tail.size());
    EXPECT_FALSE(base64.contains('\n'));
    const QImage image = QImage::fromData(QByteArray::fromBase64(base64), "PNG");
    ASSERT_EQ(image.size(), QSize(64, 48));
    EXPECT_EQ(image.pixelColor(8, 8), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(56, 40), QColor(Qt::white));
}

TEST_F(Exporting, AProjectIsSavedAsAPackage) {
    const model::PaintProject project = samples::twoLayers();
    const QUrl url = QUrl::fromLocalFile(save(project, SaveFormat::project));
    EXPECT_EQ(ProjectFileService::read(url).layers, project.layers);
}

TEST_F(Exporting, ACanvasTooLargeForAPictureSaysSo) {
    model::PaintProject project = samples::twoLayers();
    project.canvasWidth = 1e9;
    EXPECT_EQ(saveError(project, SaveFormat::png), "The image could not be encoded.");
}

TEST_F(Exporting, AFolderInTheWayIsTold) {
    ASSERT_TRUE(QDir().mkpath(file(SaveFormat::png) + QStringLiteral("/kept")));
    EXPECT_THAT(saveError(samples::twoLayers(), SaveFormat::png), HasSubstr("Is a directory"));
    EXPECT_EQ(names().size(), 1);
}

/// The outside encoder, played by a script that writes down how it was called.
class WebPEncoding : public Exporting {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir().mkpath(temporaryFolder));
        QFile script(encoder);
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write(
            "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.log\"\n"
            "head -c 4 \"$4\" > \"$6\"\nexit $(cat \"$0.exit\")\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        setExitCode(0);
    }
    void setExitCode(int code) const {
        QFile file(encoder + QStringLiteral(".exit"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(QByteArray::number(code));
    }
    std::string encode(const QString& program) const {
        try {
            const auto file = platform::systemFileOperations().createFile(output);
            const raster::RasterImage picture = render(samples::twoLayers(), Background::white);
            writeWebPWithEncoder(picture, *file, program, temporaryFolder);
            file->finish();
        } catch (const FileError& error) {
            return error.description().toStdString();
        }
        return "no error";
    }
    QStringList temporaryFiles() const {
        return QDir(temporaryFolder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    QString temporaryFolder = folder.filePath(QStringLiteral("tmp"));
    QString encoder = folder.filePath(QStringLiteral("cwebp"));
    QString output = folder.filePath(QStringLiteral("out.webp"));
};

TEST_F(WebPEncoding, TheOutsideEncoderIsGivenAPngAndItsOutputIsTheFile) {
    EXPECT_EQ(encode(encoder), "no error");
    EXPECT_EQ(contents(output), QByteArray("\x89PNG"));
    const QList<QByteArray> arguments = contents(encoder + QStringLiteral(".log")).split('\n');
    ASSERT_EQ(arguments.size(), 7);
    EXPECT_EQ(arguments.first(3), QList<QByteArray>({"-quiet", "-q", "92"}));
    EXPECT_EQ(arguments[4], QByteArray("-o"));
    const QString input = QFileInfo(QString::fromLocal8Bit(arguments[3])).fileName();
    EXPECT_TRUE(input.startsWith(QStringLiteral("Quillabrae-")));
    EXPECT_TRUE(input.endsWith(QStringLiteral(".png")));
    EXPECT_TRUE(temporaryFiles().isEmpty());
}

TEST_F(WebPEncoding, TheRealEncoderMakesTheFile) {
    ASSERT_FALSE(webPEncoder().isEmpty());
    EXPECT_EQ(encode(webPEncoder()), "no error");
    outputOf(QStringLiteral("webpinfo"), {output});
    const QImage image(output, "webp");
    ASSERT_EQ(image.size(), QSize(8, 6));
    expectNear(image.pixelColor(1, 3), Qt::red, 8);
    EXPECT_TRUE(temporaryFiles().isEmpty());
}

TEST_F(WebPEncoding, AnEncoderThatFailsIsToldAndLeavesNoTemporaryFile) {
    setExitCode(3);
    EXPECT_EQ(encode(encoder), "The image could not be encoded.");
    EXPECT_TRUE(temporaryFiles().isEmpty());
}

TEST_F(WebPEncoding, AnEncoderThatCannotStartIsTold) {
    EXPECT_NE(encode(folder.filePath(QStringLiteral("missing"))), "no error");
    EXPECT_TRUE(temporaryFiles().isEmpty());
}

TEST_F(WebPEncoding, WithoutAnEncoderTheUserIsToldWhatIsMissing) {
    EXPECT_EQ(encode(QString()),
              "WebP export requires macOS ImageIO WebP encoding support or the cwebp command-line "
              "encoder.");
}

} // namespace
} // namespace quillabrae::persistence
