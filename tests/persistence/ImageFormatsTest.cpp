// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FaultyFileOperations.h"
#include "persistence/FileError.h"
#include "persistence/FormatRoundTrip.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"
#include "support/OrdinaryUser.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <random>

namespace quillabrae::persistence {
namespace {

constexpr auto pictures = std::to_array<Picture>({
    {"Point", {1, 1}, Contents::opaque},
    {"Opaque", {3, 257}, Contents::opaque},
    {"Translucent", {67, 45}, Contents::translucent},
    {"Hidden", {67, 45}, Contents::hidden},
    {"HalfOpacity", {67, 45}, Contents::halfOpacity},
    {"Empty", {67, 45}, Contents::empty},
    {"Wide", {20000, 40}, Contents::opaque},
});

class EveryFormat : public FormatRoundTrip,
                    public testing::WithParamInterface<std::tuple<Format, Picture>> {};

TEST_P(EveryFormat, IsReadBackByOthers) {
    const auto& [format, picture] = GetParam();
    const model::PaintProject project = projectOf(picture);
    const bool hasSuchPictures = picture.size.width() <= format.longestSide || format.decodeLonger;
    if (hasSuchPictures)
        expectRoundTrip(project, format);
    else
        EXPECT_THROW(write(project, format.format), FileError);
}

INSTANTIATE_TEST_SUITE_P(, EveryFormat,
                         testing::Combine(testing::ValuesIn(allFormats().begin(),
                                                            allFormats().end()),
                                          testing::ValuesIn(pictures)),
                         [](const auto& info) {
                             return rawText(std::get<0>(info.param).format).toStdString() +
                                    std::get<1>(info.param).name;
                         });

using ImageFormats = FormatRoundTrip;

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
    expectRoundTrip(samples::project(size, {layer}), formatNamed(SaveFormat::gif));
}

class EveryFailure : public FormatRoundTrip, public testing::WithParamInterface<Format> {
protected:
    static std::string saveError(SaveFormat format, const QString& path,
                                 platform::FileOperations& operations) {
        try {
            ProjectImageExportService::save(samples::twoLayers(), QUrl::fromLocalFile(path), format,
                                            operations);
        } catch (const FileError& error) {
            return error.description().toStdString();
        }
        return "no error";
    }
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
        const tests::OrdinaryUser user;
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

INSTANTIATE_TEST_SUITE_P(, EveryFailure,
                         testing::ValuesIn(allFormats().begin(), allFormats().end()),
                         [](const auto& info) { return rawText(info.param.format).toStdString(); });

} // namespace
} // namespace quillabrae::persistence
