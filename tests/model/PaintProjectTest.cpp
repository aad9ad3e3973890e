// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintProject.h"
#include "model/PastedImage.h"
#include "model/ProjectFingerprint.h"
#include "model/RecordCoding.h"
#include "support/RandomRecords.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillabrae::model {
namespace {

using tests::RandomRecords;

PaintProject fileNamed(const char* url) {
    PaintProject project;
    project.title = QStringLiteral("Title");
    project.fileURL = QUrl(QString::fromUtf8(url));
    return project;
}

TEST(PaintProject, TwoThatDifferOnlyInTheirTimeStampAreNotEqual) {
    const PaintProject a = RandomRecords(21).project();
    PaintProject b = a;
    EXPECT_EQ(a, b);
    b.lastModified = b.lastModified.addMSecs(1);
    EXPECT_NE(a, b);
}

TEST(PaintProject, OneMadeOfAPastedImageIsNumberedFromTheSecond) {
    const PastedImage image{PngBytes(QByteArray("png")), 40.0, 30.0, std::nullopt, std::nullopt};
    EXPECT_EQ(PaintProject::fromPastedImage(image, 1).title, QStringLiteral("Pasted Image"));
    EXPECT_EQ(PaintProject::fromPastedImage(image, 2).title, QStringLiteral("Pasted Image 2"));
    EXPECT_EQ(PaintProject::fromPastedImage(image, 2).layers.at(0).name,
              QStringLiteral("Pasted Image"));
}

TEST(PaintProject, OneMadeOfAPastedImageIsThatImageSelectedWhole) {
    const PastedImage image{PngBytes(QByteArray("png")), 40.0, 30.0, 5.0, 6.0};
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const PaintProject project = PaintProject::fromPastedImage(image, 3);
    EXPECT_EQ(project.canvasWidth, 40.0);
    EXPECT_EQ(project.canvasHeight, 30.0);
    EXPECT_EQ(project.resolutionDPI, 96.0);
    EXPECT_EQ(project.fileURL, std::nullopt);
    EXPECT_TRUE(project.isCanvasSelected);
    EXPECT_EQ(project.pixelSelection, (PixelSelection{0.0, 0.0, 40.0, 30.0, std::nullopt}));
    EXPECT_EQ(project.floatingSelection, std::nullopt);
    ASSERT_EQ(project.layers.size(), 1U);
    const PaintLayer& layer = project.layers.front();
    EXPECT_EQ(layer.id, project.selectedLayerID);
    EXPECT_EQ(layer.bitmapPNGData, image.pngData);
    EXPECT_TRUE(layer.isVisible);
    EXPECT_FALSE(layer.isLocked);
    EXPECT_EQ(layer.opacity, 1.0);
    EXPECT_NE(project.id, layer.id);
    EXPECT_FALSE(project.id.isNull());
    EXPECT_GE(project.lastModified, before);
    EXPECT_LE(project.lastModified, QDateTime::currentDateTimeUtc());
}

TEST(PaintProject, ItsNameIsTheStemOfItsFile) {
    EXPECT_EQ(fileNamed("file:///a/Boat.quillabrae").displayName(), QStringLiteral("Boat"));
    EXPECT_EQ(fileNamed("file:///a/Boat.quillabrae/").displayName(), QStringLiteral("Boat"));
    EXPECT_EQ(fileNamed("file:///a.b/v1.2%20of%20%23.png").displayName(),
              QStringLiteral("v1.2 of #"));
    EXPECT_EQ(fileNamed("file:///a/Boat").displayName(), QStringLiteral("Boat"));
}

TEST(PaintProject, AFileThatIsAllExtensionIsNamedWhole) {
    EXPECT_EQ(fileNamed("file:///a/.quillabrae").displayName(), QStringLiteral(".quillabrae"));
}

TEST(PaintProject, WithoutAFileNameItsNameIsItsTitle) {
    EXPECT_EQ(fileNamed("file:///").displayName(), QStringLiteral("Title"));
    PaintProject project = fileNamed("file:///a/Boat.png");
    project.fileURL.reset();
    EXPECT_EQ(project.displayName(), QStringLiteral("Title"));
}

TEST(PaintProject, AStaleLayerIsNoLayer) {
    PaintProject project = RandomRecords(22).project();
    EXPECT_EQ(project.selectedLayer(), &project.layers.front());
    project.selectedLayerID = QUuid::createUuid();
    EXPECT_EQ(project.selectedLayer(), nullptr);
}

TEST(ProjectFingerprint, SetsAsideWhereAProjectIsAndWhenItChanged) {
    const PaintProject a = RandomRecords(23).project();
    PaintProject b = a;
    b.fileURL = QUrl::fromLocalFile(QStringLiteral("/elsewhere"));
    b.lastModified = b.lastModified.addDays(1);
    EXPECT_EQ(ProjectFingerprint::of(a), ProjectFingerprint::of(b));
}

// Equality of fingerprints means equality of the encoded projects.
TEST(ProjectFingerprint, IsEqualExactlyWhereTheEncodedBytesAre) {
    const PaintProject a = RandomRecords(24).project();
    std::vector<PaintProject> others(8, a);
    others[1].title += QLatin1Char('x');
    others[2].layers.front().opacity = 0.123;
    others[3].layers.front().bitmapPNGData = PngBytes(QByteArray("other"));
    others[4].layers.push_back(RandomRecords(25).layer());
    others[5].pixelSelection = RandomRecords(26).selection();
    others[6].isCanvasSelected = !a.isCanvasSelected;
    others[7] = decodedJson<PaintProject>(encodedJson(a));
    const auto fingerprint = ProjectFingerprint::of(a);
    for (const PaintProject& other : others) {
        const auto otherFingerprint = ProjectFingerprint::of(other);
        EXPECT_EQ(fingerprint == otherFingerprint,
                  encodedJson(fingerprint->project()) == encodedJson(otherFingerprint->project()));
    }
}

TEST(ProjectFingerprint, AProjectThatCannotBeEncodedHasNone) {
    PaintProject project = RandomRecords(27).project();
    EXPECT_TRUE(ProjectFingerprint::of(project));
    for (const auto member :
         {&PaintProject::canvasWidth, &PaintProject::canvasHeight, &PaintProject::resolutionDPI}) {
        PaintProject changed = project;
        changed.*member = std::numeric_limits<double>::quiet_NaN();
        EXPECT_FALSE(ProjectFingerprint::of(changed));
    }
    PaintProject changed = project;
    changed.layers.back().opacity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(ProjectFingerprint::of(changed));
    changed = project;
    changed.pixelSelection = PixelSelection{0.0, std::nan(""), 1.0, 1.0, std::nullopt};
    EXPECT_FALSE(ProjectFingerprint::of(changed));
    changed = project;
    changed.floatingSelection = FloatingPixelSelection{PngBytes(), 1.0, std::nan(""), QUuid()};
    EXPECT_FALSE(ProjectFingerprint::of(changed));
}

} // namespace
} // namespace quillabrae::model
