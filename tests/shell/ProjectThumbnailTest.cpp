// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/CodecCounts.h"
#include "raster/DecodeCache.h"
#include "shell/editor/ProjectThumbnail.h"
#include "store/StoreTest.h"

namespace quillabrae::shell {
namespace {

using ProjectThumbnailTest = store::StoreTest;

/// Of a project that nothing is known of.
QImage projectThumbnail(const model::PaintProject& project, QSize room) {
    LayerPictureCache nothingKnown;
    return shell::projectThumbnail(project, room, nothingKnown);
}

TEST_F(ProjectThumbnailTest, KeepsTheCanvassProportions) {
    const auto store = makeStore(store::Persistence::off);
    EXPECT_EQ(projectThumbnail(store->createUntitledProject(400, 100, 96), {40, 30}).size(),
              QSize(40, 10));
    EXPECT_EQ(projectThumbnail(store->createUntitledProject(10, 1000, 96), {40, 30}).size(),
              QSize(1, 30));
}

TEST_F(ProjectThumbnailTest, ShowsVisibleLayersAtTheirOpacity) {
    const auto store = makeStore(store::Persistence::off);
    model::PaintProject project = *store->createProject(writePicture(QStringLiteral("red.png")));
    EXPECT_EQ(projectThumbnail(project, {40, 30}).pixelColor(5, 5), QColor(Qt::red));
    project.layers.front().opacity = 0.5;
    EXPECT_NEAR(projectThumbnail(project, {40, 30}).pixelColor(5, 5).alpha(), 128, 1);
    project.layers.front().isVisible = false;
    EXPECT_EQ(projectThumbnail(project, {40, 30}).pixelColor(5, 5).alpha(), 0);
}

TEST_F(ProjectThumbnailTest, ShowsFloatingPixelsWhereTheyStand) {
    const auto store = makeStore(store::Persistence::off);
    model::PaintProject project = store->createUntitledProject(40, 30, 96);
    project.layers.front().bitmapPNGData.reset();
    const auto red = store->createProject(writePicture(QStringLiteral("red.png")));
    project.floatingSelection = model::FloatingPixelSelection{
        .pngData = *red->layers.front().bitmapPNGData, .layerID = project.layers.front().id};
    project.pixelSelection =
        model::PixelSelection{.x = 20.7, .y = 10, .width = 10, .height = 8, .maskPNGData = {}};
    const QImage shown = projectThumbnail(project, {40, 30});
    EXPECT_EQ(shown.pixelColor(20, 10), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(29, 17), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(30, 10).alpha(), 0);
    EXPECT_EQ(shown.pixelColor(19, 10).alpha(), 0);
    project.layers.front().isVisible = false;
    EXPECT_EQ(projectThumbnail(project, {40, 30}).pixelColor(25, 12).alpha(), 0);
}

TEST_F(ProjectThumbnailTest, OnlyLayersThatChangedAreLookedAtAgain) {
    const auto store = makeStore(store::Persistence::off);
    model::PaintProject project = *store->createProject(writePicture(QStringLiteral("red.png")));
    project.layers.resize(4, project.layers.front());
    const auto freshBytes = [&] {
        return model::PngBytes(project.layers.front().bitmapPNGData->toByteArray());
    };
    for (model::PaintLayer& layer : project.layers) layer.bitmapPNGData = freshBytes();
    LayerPictureCache known;
    const raster::DecodeCacheReadOnly readOnly;
    const auto decodedFor = [&](QSize room) {
        const std::size_t before = raster::codecCounts().decodedFiles;
        EXPECT_EQ(shell::projectThumbnail(project, room, known), projectThumbnail(project, room));
        // The one without a memory decodes all of them.
        return raster::codecCounts().decodedFiles - before - 4;
    };
    EXPECT_EQ(decodedFor({40, 30}), 4U);
    EXPECT_EQ(decodedFor({40, 30}), 0U);
    project.layers[2].bitmapPNGData = freshBytes();
    known.forgetDead();
    EXPECT_EQ(decodedFor({40, 30}), 1U);
    EXPECT_EQ(decodedFor({20, 15}), 4U);
}

TEST_F(ProjectThumbnailTest, ALayerThatIsNotReadableIsTriedOnce) {
    const auto store = makeStore(store::Persistence::off);
    const QByteArray whole = store->createProject(writePicture(QStringLiteral("red.png")))
                                 ->layers.front()
                                 .bitmapPNGData->toByteArray();
    const model::PngBytes torn(whole.first(whole.size() / 2));
    LayerPictureCache known;
    EXPECT_TRUE(known.picture(torn, {40, 30}).isNull());
    const std::size_t before = raster::codecCounts().decodedFiles;
    EXPECT_TRUE(known.picture(torn, {40, 30}).isNull());
    EXPECT_EQ(raster::codecCounts().decodedFiles, before);
}

} // namespace
} // namespace quillabrae::shell
