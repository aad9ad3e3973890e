// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ImageIntakeFixture.h"

namespace quillabrae::store {
namespace {

namespace MimeTypes = platform::MimeTypes;
using model::PixelSelection;

TEST(DroppedContents, ADrawingGoesBeforeAPictureAndAPictureBeforeFiles) {
    platform::MemoryPasteboard drag;
    const QByteArray files = platform::uriListOf(QUrl(QStringLiteral("file:///a.png")));
    drag.put({{MimeTypes::uriList, files}, {MimeTypes::png, "p"}, {MimeTypes::svg, "<svg/>"}});
    EXPECT_EQ(droppedContents(drag), (DroppedContents{"<svg/>", {}, {}}));
    drag.put({{MimeTypes::text, "https://example.org"},
              {MimeTypes::uriList, files},
              {MimeTypes::png, "p"},
              {MimeTypes::webP, "w"}});
    EXPECT_EQ(droppedContents(drag), (DroppedContents{{}, "w", {}}));
    drag.put({{MimeTypes::text, "/a.png"}, {MimeTypes::uriList, files}});
    EXPECT_EQ(droppedContents(drag),
              (DroppedContents{{}, {}, {QUrl(QStringLiteral("file:///a.png"))}}));
    drag.put({{MimeTypes::text, "words"}});
    EXPECT_TRUE(droppedContents(drag).isEmpty());
}

TEST(DroppedContents, AWindowWelcomesWhatCouldHoldAnImage) {
    platform::MemoryPasteboard drag;
    EXPECT_FALSE(isDropWelcome(drag));
    for (const QString& type : {MimeTypes::png, MimeTypes::svg, MimeTypes::uriList, MimeTypes::text,
                                QStringLiteral("text/plain;charset=utf-8")}) {
        drag.put({{QStringLiteral("application/zip"), "x"}, {type, "x"}});
        EXPECT_TRUE(isDropWelcome(drag)) << qPrintable(type);
    }
    drag.put({{QStringLiteral("application/zip"), "x"}});
    EXPECT_FALSE(isDropWelcome(drag));
}

TEST_F(ImageIntake, ADroppedFileIsPastedAtTheTopLeft) {
    ASSERT_TRUE(store->acceptDrop(dropFiles({writePicture(QStringLiteral("red.png"))}),
                                  DropTarget::editor));
    EXPECT_EQ(project().pixelSelection, (PixelSelection{0, 0, 5, 4, std::nullopt}));
    EXPECT_EQ(store->openProjects().size(), 1u);
}

TEST_F(ImageIntake, OfSeveralDroppedFilesTheFirstIsPasted) {
    panels.pasteChoices = {PasteImageChoice::cancel};
    ASSERT_TRUE(store->acceptDrop(dropFiles({writePicture(QStringLiteral("1.png"), Qt::red),
                                             writePicture(QStringLiteral("2.png"), Qt::blue)}),
                                  DropTarget::editor));
    EXPECT_EQ(store->openProjects().size(), 1u);
    const auto floating = raster::decodedImage(project().floatingSelection->pngData).toQImage();
    EXPECT_EQ(floating.pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(ImageIntake, ABrowsersImageIsItsDataNotItsAddress) {
    const auto dropped = drop({{MimeTypes::uriList, "https://example.org/cat.png\r\n"},
                               {MimeTypes::text, "https://example.org/cat.png"},
                               {QStringLiteral("text/html"), "<img>"},
                               {MimeTypes::png, pngFile(Qt::blue)}});
    ASSERT_TRUE(store->acceptDrop(dropped, DropTarget::editor));
    EXPECT_EQ(project().floatingSelection->width, 5);
}

TEST_F(ImageIntake, DroppedSvgTextIsDrawnAndAsksWhereItGoes) {
    panels.pasteChoices = {PasteImageChoice::expandCanvas};
    ASSERT_TRUE(store->acceptDrop(drop({{MimeTypes::text, "<svg/>"}}), DropTarget::editor));
    EXPECT_EQ(project().canvasWidth, 30);
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("paste 30 x 20 smaller")});
}

TEST_F(ImageIntake, ADropWithoutAnImageSaysSo) {
    QDir(folder.path()).mkdir(QStringLiteral("photos"));
    const DroppedContents drops[] = {
        dropFiles({file(QStringLiteral("photos"))}),
        dropFiles({writeText(QStringLiteral("letter.txt"), "words")}),
        dropFiles({file(QStringLiteral("gone.png"))}),
        drop({{MimeTypes::text, "words"}}),
        drop({{MimeTypes::text, "<svg broken"}}),
        drop({{MimeTypes::png, "rubbish"}}),
        drop({{MimeTypes::uriList, "https://example.org/cat.png"}}),
        drop({}),
    };
    const auto before = store->openProjects();
    for (const DroppedContents& contents : drops) {
        store->setStatusMessage(QString());
        EXPECT_FALSE(store->acceptDrop(contents, DropTarget::editor));
        EXPECT_EQ(store->statusMessage(), QStringLiteral("Drop failed: no image found"));
    }
    EXPECT_EQ(store->openProjects(), before);
}

TEST_F(ImageIntake, ADroppedPackageOpens) {
    saveTo(*store, QStringLiteral("boat.quillabrae"));
    store->closeProject(id);
    ASSERT_TRUE(store->acceptDrop(dropFiles({file(QStringLiteral("boat.quillabrae/"))}),
                                  DropTarget::editor));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Opened boat"));
    EXPECT_EQ(store->openProjects().size(), 1u);
    EXPECT_FALSE(store->acceptDrop(dropFiles({file(QStringLiteral("gone.quillabrae"))}),
                                   DropTarget::editor));
    EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Open failed: ")));
}

TEST_F(ImageIntake, AnImageDroppedOnTheWelcomeWindowIsAProject) {
    ASSERT_TRUE(store->acceptDrop(dropFiles({writePicture(QStringLiteral("red.png"))}),
                                  DropTarget::welcome));
    EXPECT_EQ(store->openProjects().size(), 2u);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Pasted Image from clipboard"));
    EXPECT_EQ(panels.shown, QStringList());
}

} // namespace
} // namespace quillabrae::store
