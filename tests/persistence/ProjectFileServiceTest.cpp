// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/RecordCoding.h"
#include "persistence/FaultyFileOperations.h"
#include "persistence/FileError.h"
#include "persistence/ProjectFileService.h"
#include "persistence/SampleProjects.h"
#include "platform/FileIcons.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillabrae::persistence {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class NotedFileIcons final : public platform::FileIcons {
public:
    void setIcon(const QString& folder, const QString& imageFile) override {
        noted.append({folder, imageFile});
    }
    QList<std::pair<QString, QString>> noted;
};

class Packages : public ::testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }

    void save(const model::PaintProject& project) {
        ProjectFileService::save(project, QUrl::fromLocalFile(package), samples::StoppedClock(),
                                 icons);
    }
    model::PaintProject read() const {
        return ProjectFileService::read(QUrl::fromLocalFile(package));
    }

    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void put(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QJsonObject json() const {
        return QJsonDocument::fromJson(contents(package + QStringLiteral("/project.json")))
            .object();
    }
    static QStringList namesIn(const QString& folder) {
        QStringList names =
            QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.sort();
        return names;
    }
    std::string readError(const QUrl& url) const {
        try {
            ProjectFileService::read(url);
        } catch (const FileError& error) {
            return error.description().toStdString();
        }
        return "no error";
    }
    std::string readError() const { return readError(QUrl::fromLocalFile(package)); }

    QTemporaryDir folder;
    QString package = folder.filePath(QStringLiteral("My Picture.quillabrae"));
    NotedFileIcons icons;
};

TEST_F(Packages, APackageHoldsTheProjectAndItsTwoPreviews) {
    save(samples::twoLayers());
    EXPECT_EQ(namesIn(package),
              QStringList({QStringLiteral("QuickLook"), QStringLiteral("project.json")}));
    EXPECT_EQ(namesIn(package + QStringLiteral("/QuickLook")),
              QStringList({QStringLiteral("Preview.pdf"), QStringLiteral("Thumbnail.png")}));
    EXPECT_EQ(namesIn(folder.path()), QStringList{QFileInfo(package).fileName()});
}

TEST_F(Packages, WhatIsReadIsWhatWasSaved) {
    model::PaintProject project = samples::twoLayers();
    project.layers[1].opacity = 0.25;
    project.layers[0].isVisible = false;
    project.title = QStringLiteral("Übung \"7\" \\ \n\U0001F58C");
    project.isCanvasSelected = true;
    project.pixelSelection = model::PixelSelection{1.5, 2, 3, 4, project.layers[1].bitmapPNGData};
    project.floatingSelection =
        model::FloatingPixelSelection{*project.layers[1].bitmapPNGData, 8, 6, project.layers[0].id};
    save(project);
    EXPECT_EQ(read(), project);
}

TEST_F(Packages, TheSavedCopyHasNoFileAndTheInstantOfSaving) {
    model::PaintProject project = samples::twoLayers();
    project.fileURL = QUrl::fromLocalFile(QStringLiteral("/home/me/secret place/a.png"));
    project.lastModified = samples::instant().addYears(-3);
    save(project);
    EXPECT_FALSE(json().contains(QStringLiteral("fileURL")));
    EXPECT_EQ(json()[QStringLiteral("lastModified")].toString(),
              QStringLiteral("2024-02-29T12:34:56Z"));
    EXPECT_FALSE(contents(package + QStringLiteral("/project.json")).contains("secret"));
    EXPECT_EQ(project.fileURL->fileName(), QStringLiteral("a.png"));
}

TEST_F(Packages, TheJsonReadsTheSameForOthers) {
    const model::PaintProject project = samples::twoLayers();
    save(project);
    const QJsonObject layer = json()[QStringLiteral("layers")].toArray()[1].toObject();
    const QByteArray png =
        QByteArray::fromBase64(layer[QStringLiteral("bitmapPNGData")].toString().toLatin1());
    EXPECT_EQ(png, project.layers[1].bitmapPNGData->toByteArray());
    EXPECT_EQ(json()[QStringLiteral("canvasWidth")].toDouble(), 8.0);
}

TEST_F(Packages, EqualProjectsHaveEqualBytes) {
    const model::PaintProject project = samples::twoLayers();
    save(project);
    const QByteArray first = contents(package + QStringLiteral("/project.json"));
    package = path(QStringLiteral("other.quillabrae"));
    save(project);
    EXPECT_EQ(contents(package + QStringLiteral("/project.json")), first);
}

TEST_F(Packages, AnOldPackageIsReplacedWhole) {
    save(samples::twoLayers());
    put(package + QStringLiteral("/QuickLook/Stale.pdf"), "stale");
    put(package + QStringLiteral("/note.txt"), "stale");
    const model::PaintProject project = samples::twoLayers(QSize(3, 3));
    save(project);
    EXPECT_EQ(read(), project);
    EXPECT_EQ(namesIn(package).size(), 2);
    EXPECT_EQ(namesIn(package + QStringLiteral("/QuickLook")).size(), 2);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
}

TEST_F(Packages, APlainJsonFileIsAProjectAndIsReplacedByAPackage) {
    const model::PaintProject project = samples::twoLayers();
    put(package, model::encodedJson(project));
    EXPECT_EQ(read(), project);
    save(project);
    EXPECT_TRUE(QFileInfo(package).isDir());
    EXPECT_EQ(read(), project);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
}

TEST_F(Packages, APathInTheFileDoesNotComeBack) {
    model::PaintProject project = samples::twoLayers();
    project.fileURL = QUrl::fromLocalFile(QStringLiteral("/elsewhere.png"));
    put(package, model::encodedJson(project));
    EXPECT_EQ(read().fileURL, std::nullopt);
}

TEST_F(Packages, AUrlThatEndsInASlashNamesThePackage) {
    const QUrl url = QUrl::fromLocalFile(package + u'/');
    const model::PaintProject project = samples::twoLayers();
    ProjectFileService::save(project, url, samples::StoppedClock(), icons);
    EXPECT_EQ(ProjectFileService::read(url), project);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
}

TEST_F(Packages, TheIconIsTheThumbnailInThePackage) {
    save(samples::twoLayers());
    ASSERT_EQ(icons.noted.size(), 1);
    EXPECT_EQ(icons.noted[0].first, package);
    EXPECT_EQ(icons.noted[0].second, package + QStringLiteral("/QuickLook/Thumbnail.png"));
    EXPECT_FALSE(QImage(icons.noted[0].second).isNull());
}

TEST_F(Packages, ThePreviewsShowThePictureOnWhite) {
    save(samples::twoLayers(QSize(4, 4)));
    const QImage thumbnail(package + QStringLiteral("/QuickLook/Thumbnail.png"));
    EXPECT_EQ(thumbnail.size(), QSize(1024, 1024));
    EXPECT_EQ(thumbnail.pixelColor(100, 500), QColor(Qt::red));
    EXPECT_EQ(thumbnail.pixelColor(900, 500), QColor(Qt::white));
}

TEST_F(Packages, ACanvasTooLargeForAPictureIsSavedWithoutPreviews) {
    model::PaintProject project = samples::twoLayers();
    project.canvasWidth = 1e9;
    save(project);
    EXPECT_EQ(read(), project);
    EXPECT_TRUE(namesIn(package + QStringLiteral("/QuickLook")).isEmpty());
    EXPECT_TRUE(icons.noted.isEmpty());
}

TEST_F(Packages, AProjectThatHasNoJsonFormIsNotSaved) {
    save(samples::twoLayers());
    const QByteArray before = contents(package + QStringLiteral("/project.json"));
    model::PaintProject project = samples::twoLayers();
    project.layers[1].opacity = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THROW(save(project), FileError);
    EXPECT_EQ(contents(package + QStringLiteral("/project.json")), before);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
}

TEST_F(Packages, AFolderThatIsNoPackageFailsAsItsMissingFile) {
    ASSERT_TRUE(QDir().mkpath(package));
    EXPECT_THAT(readError(), HasSubstr("project.json"));
    EXPECT_THAT(readError(), HasSubstr("No such file or directory"));
}

TEST_F(Packages, AMissingFileIsNamedInTheError) {
    EXPECT_THAT(readError(), HasSubstr("My Picture.quillabrae"));
    EXPECT_THAT(readError(), HasSubstr("No such file or directory"));
}

TEST_F(Packages, AFaultyFileIsToldByThePlaceOfTheFault) {
    QByteArray json = model::encodedJson(samples::twoLayers());
    json.replace("\"isLocked\"", "\"isLucked\"");
    put(package, json);
    EXPECT_THAT(readError(), HasSubstr("layers[0]"));
    EXPECT_THAT(readError(), HasSubstr("isLocked"));
    EXPECT_THAT(readError(), Not(HasSubstr("..")));
}

TEST_F(Packages, HostileFilesAreErrors) {
    const QByteArray whole = model::encodedJson(samples::twoLayers());
    const QByteArray deep(100'000, '[');
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("\0", 1), QByteArray("null"), QByteArray("[]"), deep,
          whole.first(whole.size() / 2), whole + '}', QByteArray("\xef\xbb\xbf{}"),
          QByteArray(1'000'000, '\xff')}) {
        put(package, bytes);
        EXPECT_NE(readError(), "no error") << bytes.left(20).toHex().toStdString();
    }
}

TEST_F(Packages, WhatIsNoFileIsNotWaitedFor) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(package).constData(), 0600), 0);
    EXPECT_THAT(readError(), HasSubstr("not a file"));
    EXPECT_THAT(readError(QUrl::fromLocalFile(QStringLiteral("/dev/zero"))),
                HasSubstr("not a file"));
}

TEST_F(Packages, AFileLargerThanMemoryIsRefusedBeforeItIsRead) {
    QFile file(package);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(1LL << 42));
    EXPECT_THAT(readError(), HasSubstr("too large"));
}

TEST_F(Packages, WhatIsNotOnThisComputerIsAnError) {
    const QUrl url(QStringLiteral("https://example.org/a.quillabrae"));
    EXPECT_THAT(readError(url), HasSubstr("local"));
    EXPECT_THROW(
        ProjectFileService::save(samples::twoLayers(), url, samples::StoppedClock(), icons),
        FileError);
}

} // namespace
} // namespace quillabrae::persistence
