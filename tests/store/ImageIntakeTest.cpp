// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ImageIntakeFixture.h"

namespace quillabrae::store {
namespace {

namespace MimeTypes = platform::MimeTypes;
using model::PaintTool;
using model::PastedImage;
using model::PixelSelection;

TEST_F(ImageIntake, ADrawingThatIsToBeTooLargeIsToldForFilesAndIsNoImageElsewhere) {
    const QByteArray svg = "<svg>boundless</svg>";
    QFile drawing(folder.filePath(QStringLiteral("a.svg")));
    ASSERT_TRUE(drawing.open(QIODevice::WriteOnly));
    drawing.write(svg);
    drawing.close();
    panels.imagesToImport = {file(QStringLiteral("a.svg"))};
    store->importLayerFromFile();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open failed: image could not be read"));
    EXPECT_EQ(project().layers.size(), 1U);
    pasteboard.put({{platform::MimeTypes::svg, svg}});
    EXPECT_FALSE(store->imageOnClipboard());
    EXPECT_FALSE(store->acceptDrop(drop({{platform::MimeTypes::svg, svg}}), DropTarget::editor));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Drop failed: no image found"));
    EXPECT_EQ(drawings.size(), 3);
}

TEST_F(ImageIntake, APastedImageFloatsWhereItWasCopied) {
    const auto pasted =
        store->pasteImageIntoActiveProject(image(3, 2, QPointF(4, 1)), PastedCanvas::kept);
    ASSERT_TRUE(pasted);
    EXPECT_EQ(*pasted, project());
    EXPECT_EQ(project().pixelSelection, (PixelSelection{4, 1, 3, 2, std::nullopt}));
    ASSERT_TRUE(project().floatingSelection);
    EXPECT_EQ(project().floatingSelection->width, 3);
    EXPECT_EQ(project().floatingSelection->height, 2);
    EXPECT_EQ(project().floatingSelection->layerID, project().selectedLayerID);
    EXPECT_TRUE(project().isCanvasSelected);
    EXPECT_EQ(store->settings().selectedTool, PaintTool::moveSelectedPixels);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Pasted image as selected pixels"));
    EXPECT_EQ(titles(*store, id).last(), QStringLiteral("Paste"));
    EXPECT_EQ(store->history(id).entries.back().symbolName, QStringLiteral("doc.on.clipboard"));
}

TEST_F(ImageIntake, WithoutBothCoordinatesItLandsAtTheTopLeft) {
    PastedImage half = image(3, 2);
    half.sourceX = 4.0;
    store->pasteImageIntoActiveProject(half, PastedCanvas::kept);
    EXPECT_EQ(project().pixelSelection, (PixelSelection{0, 0, 3, 2, std::nullopt}));
}

TEST_F(ImageIntake, AnImageLargerThanTheKeptCanvasStaysWhole) {
    store->pasteImageIntoActiveProject(image(20, 30), PastedCanvas::kept);
    EXPECT_EQ(project().canvasWidth, 8);
    EXPECT_EQ(project().pixelSelection, (PixelSelection{0, 0, 20, 30, std::nullopt}));
}

TEST_F(ImageIntake, AnExpandedCanvasGrowsToTheRightAndDownwardOnly) {
    store->pasteImageIntoActiveProject(image(20, 3, QPointF(100, 1)), PastedCanvas::expanded);
    EXPECT_EQ(project().canvasWidth, 120);
    EXPECT_EQ(project().canvasHeight, 6);
    const QImage layer = pixels(project().layers.front());
    EXPECT_EQ(layer.size(), QSize(120, 6));
    EXPECT_EQ(layer.pixel(7, 5), 0xFFFFFFFFu);
    EXPECT_EQ(layer.pixel(8, 5), 0u);
    EXPECT_EQ(store->statusMessage(),
              QStringLiteral("Pasted image as selected pixels and expanded canvas"));
    EXPECT_EQ(titles(*store, id).last(), QStringLiteral("Expand Canvas"));
    EXPECT_EQ(store->history(id).entries.back().symbolName,
              QStringLiteral("arrow.up.left.and.arrow.down.right"));
    store->undo(id);
    EXPECT_EQ(project().canvasWidth, 8);
    EXPECT_FALSE(project().floatingSelection);
}

TEST_F(ImageIntake, ExpandingSaysSoWhenTheCanvasWasLargeEnough) {
    const auto before = project().layers;
    store->pasteImageIntoActiveProject(image(2, 2, QPointF(-5, 1)), PastedCanvas::expanded);
    EXPECT_EQ(project().canvasWidth, 8);
    EXPECT_EQ(project().layers, before);
    EXPECT_EQ(titles(*store, id).last(), QStringLiteral("Expand Canvas"));
}

TEST_F(ImageIntake, ACanvasThatWouldBeTooLargeStaysAsItWas) {
    const auto before = project();
    EXPECT_FALSE(
        store->pasteImageIntoActiveProject(image(2, 2, QPointF(1e9, 0)), PastedCanvas::expanded));
    EXPECT_EQ(project(), before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Paste failed: the image would be too large"));
    EXPECT_EQ(store->history(id).entries.size(), 1u);
}

TEST_F(ImageIntake, AnExpansionThatTheUserStopsChangesNothing) {
    const auto before = project();
    work.isCancelled = true;
    EXPECT_FALSE(store->pasteImageIntoActiveProject(image(20, 3), PastedCanvas::expanded));
    EXPECT_EQ(project(), before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Paste cancelled"));
    EXPECT_EQ(store->history(id).entries.size(), 1u);
}

TEST_F(ImageIntake, PastingOnALockedLayerMakesANewTopLayer) {
    store->editActiveProject(
        [](model::PaintProject& edited) { edited.layers.front().isLocked = true; });
    const auto locked = project().layers.front();
    store->pasteImageIntoActiveProject(image(3, 2), PastedCanvas::kept);
    ASSERT_EQ(project().layers.size(), 2u);
    EXPECT_EQ(project().layers.front(), locked);
    const model::PaintLayer& top = project().layers.back();
    EXPECT_EQ(top.name, QStringLiteral("Pasted Image"));
    EXPECT_FALSE(top.isLocked);
    EXPECT_TRUE(top.isVisible);
    EXPECT_EQ(top.opacity, 1.0);
    EXPECT_FALSE(top.bitmapPNGData);
    EXPECT_EQ(project().selectedLayerID, top.id);
    EXPECT_EQ(project().floatingSelection->layerID, top.id);
}

TEST_F(ImageIntake, ASecondPasteLosesTheFirst) {
    const auto layer = project().layers.front();
    store->pasteImageIntoActiveProject(image(3, 2), PastedCanvas::kept);
    store->pasteImageIntoActiveProject(image(5, 5), PastedCanvas::kept);
    EXPECT_EQ(project().floatingSelection->width, 5);
    EXPECT_EQ(project().layers, std::vector{layer});
}

TEST_F(ImageIntake, PastingWithoutAProjectMakesOne) {
    store->closeProject(id);
    const auto made = store->pasteImageIntoActiveProject(image(3, 2), PastedCanvas::expanded);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->title, QStringLiteral("Pasted Image"));
    EXPECT_EQ(made->canvasWidth, 3);
    EXPECT_EQ(made->pixelSelection, (PixelSelection{0, 0, 3, 2, std::nullopt}));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Pasted Image from clipboard"));
}

TEST_F(ImageIntake, AnImageThatFitsIsPastedWithoutAQuestion) {
    ASSERT_TRUE(store->pasteImage(image(8, 6, QPointF(100, 100))));
    EXPECT_EQ(panels.shown, QStringList());
    EXPECT_EQ(project().canvasWidth, 8);
    EXPECT_EQ(project().pixelSelection, (PixelSelection{100, 100, 8, 6, std::nullopt}));
}

TEST_F(ImageIntake, ALargerImageGoesWhereTheUserWants) {
    panels.pasteChoices = {PasteImageChoice::openAsNewProject, PasteImageChoice::expandCanvas,
                           PasteImageChoice::keepCanvasSize, PasteImageChoice::cancel};
    const PastedImage tall = image(2, 7);
    EXPECT_EQ(store->pasteImage(tall)->title, QStringLiteral("Pasted Image"));
    store->setActiveProjectID(id);
    EXPECT_EQ(store->pasteImage(tall)->canvasHeight, 7);
    store->undo(id);
    EXPECT_EQ(store->pasteImage(tall)->canvasHeight, 6);
    const auto before = store->openProjects();
    EXPECT_FALSE(store->pasteImage(tall));
    EXPECT_EQ(store->openProjects(), before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Paste cancelled"));
    EXPECT_EQ(panels.shown, QStringList(4, QStringLiteral("paste 2 x 7 smaller")));
}

TEST_F(ImageIntake, WithoutAProjectTheUserIsAskedToo) {
    store->closeProject(id);
    EXPECT_FALSE(store->pasteImage(image(3, 2)));
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("paste 3 x 2 nowhere")});
    panels.pasteChoices = {PasteImageChoice::openAsNewProject, PasteImageChoice::openAsNewProject};
    EXPECT_EQ(store->pasteImage(image(3, 2))->title, QStringLiteral("Pasted Image"));
    store->closeProject(*store->activeProjectID());
    EXPECT_EQ(store->pasteImage(image(3, 2))->title, QStringLiteral("Pasted Image 2"));
}

TEST_F(ImageIntake, TheClipboardsDrawingGoesBeforeItsPicture) {
    pasteboard.put({{MimeTypes::png, pngFile()}, {MimeTypes::svg, "<svg/>"}});
    EXPECT_EQ(store->imageOnClipboard()->width, 30);
    pasteboard.put({{MimeTypes::png, pngFile()}, {MimeTypes::text, "a <SVG> tag"}});
    EXPECT_EQ(store->imageOnClipboard()->width, 30);
    EXPECT_EQ(drawings, QList<QByteArray>({"<svg/>", "a <SVG> tag"}));
    pasteboard.put({{MimeTypes::svg, "<svg broken"}, {MimeTypes::png, pngFile()}});
    EXPECT_EQ(store->imageOnClipboard()->width, 5);
    pasteboard.put({{MimeTypes::text, "words"}});
    EXPECT_FALSE(store->imageOnClipboard());
}

TEST_F(ImageIntake, AFileCopiedInAFileManagerIsItsPicture) {
    const QUrl picture = writePicture(QStringLiteral("red.png"));
    pasteboard.put({{MimeTypes::copiedFiles, platform::copiedFilesOf(picture)},
                    {MimeTypes::text, picture.toLocalFile().toUtf8()}});
    ASSERT_TRUE(store->imageOnClipboard());
    EXPECT_EQ(store->imageOnClipboard()->width, 5);
    const QUrl drawing = writeText(QStringLiteral("DRAWING.SVG"), "<svg/>");
    pasteboard.put({{MimeTypes::uriList, platform::uriListOf(drawing)}});
    EXPECT_EQ(store->imageOnClipboard()->width, 30);
    pasteboard.put(
        {{MimeTypes::uriList, platform::uriListOf(writeText(QStringLiteral("a.txt"), "words"))}});
    EXPECT_FALSE(store->imageOnClipboard());
}

TEST_F(ImageIntake, OfPicturesBeyondTheLimitsOnlyFilesAreToldOf) {
    const auto before = project();
    const QUrl wall = writeTooLargePicture(QStringLiteral("wall.png"));
    const QByteArray bytes("P6 20000 20000 255\n");
    const QString openFailed = QStringLiteral("Open failed: image could not be read");

    store->setStatusMessage(QString());
    pasteboard.put({{QStringLiteral("image/x-portable-pixmap"), bytes}});
    EXPECT_FALSE(store->imageOnClipboard());
    EXPECT_EQ(store->statusMessage(), QString());
    pasteboard.put({{MimeTypes::uriList, platform::uriListOf(wall)}});
    EXPECT_FALSE(store->imageOnClipboard());
    EXPECT_EQ(store->statusMessage(), openFailed);

    EXPECT_FALSE(store->acceptDrop(drop({{MimeTypes::png, bytes}}), DropTarget::editor));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Drop failed: no image found"));
    for (const DropTarget target : {DropTarget::editor, DropTarget::welcome}) {
        store->setStatusMessage(QString());
        EXPECT_FALSE(store->acceptDrop(dropFiles({wall}), target));
        EXPECT_EQ(store->statusMessage(), openFailed);
    }
    store->setStatusMessage(QString());
    EXPECT_FALSE(store->openFile(wall));
    EXPECT_EQ(store->statusMessage(), openFailed);
    EXPECT_EQ(project(), before);
}

TEST_F(ImageIntake, AnImageThatTheUserDoesNotWaitForIsNotTaken) {
    const auto before = store->openProjects();
    const QString cancelled = QStringLiteral("Paste cancelled");
    const QUrl picture = writePicture(QStringLiteral("red.png"));
    work.isCancelled = true;
    pasteboard.put({{MimeTypes::png, pngFile()}});
    EXPECT_FALSE(store->imageOnClipboard());
    EXPECT_EQ(store->statusMessage(), cancelled);
    EXPECT_FALSE(store->clipboard().pastedImageSize());
    for (const DroppedContents& contents :
         {drop({{MimeTypes::png, pngFile()}}), dropFiles({picture})}) {
        store->setStatusMessage(QString());
        EXPECT_FALSE(store->acceptDrop(contents, DropTarget::editor));
        EXPECT_EQ(store->statusMessage(), cancelled);
    }
    EXPECT_FALSE(store->openFile(picture));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open cancelled"));
    EXPECT_EQ(store->openProjects(), before);
}

TEST_F(ImageIntake, PicturesFromOutsideAreDecodedAsWork) {
    pasteboard.put({{MimeTypes::png, pngFile()}});
    EXPECT_TRUE(store->imageOnClipboard());
    EXPECT_TRUE(store->acceptDrop(drop({{MimeTypes::png, pngFile()}}), DropTarget::editor));
    EXPECT_EQ(work.titles, QStringList({QStringLiteral("Reading the clipboard"),
                                        QStringLiteral("Reading the dropped image")}));
}

TEST_F(ImageIntake, CopiedPixelsFloatExactlyOverTheirSource) {
    ASSERT_TRUE(store->clipboard().writePNGImage(
        raster::decodedImage(*project().layers.front().bitmapPNGData), QStringLiteral("cat"),
        QPointF(2, 1)));
    ASSERT_TRUE(store->pasteImage(*store->imageOnClipboard()));
    EXPECT_EQ(panels.shown, QStringList());
    EXPECT_EQ(project().pixelSelection, (PixelSelection{2, 1, 8, 6, std::nullopt}));
}

TEST_F(ImageIntake, AnSvgFileOpensAsAProjectWhateverTheCaseOfItsExtension) {
    const auto opened = store->openFile(writeText(QStringLiteral("Boat.SVG"), "<svg/>"));
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->title, QStringLiteral("Boat"));
    EXPECT_EQ(opened->canvasWidth, 30);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Opened Boat.SVG"));
    EXPECT_FALSE(store->openFile(writeText(QStringLiteral("bad.svg"), "broken")));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open failed: image could not be read"));
}

TEST_F(ImageIntake, ACleanStartRemovesTheFilesOfOldCopies) {
    const auto copied = store->clipboard().writeTemporaryPNGFile("x", QStringLiteral("cat"));
    QFile copy(copied->toLocalFile());
    ASSERT_TRUE(copy.open(QIODevice::ReadWrite));
    ASSERT_TRUE(copy.setFileTime(clock.now().addDays(-2), QFileDevice::FileModificationTime));
    copy.close();
    ASSERT_TRUE(QFile::exists(recoveryFile()));
    store = makeStore();
    EXPECT_TRUE(copy.exists());
    store->finishSession();
    store = makeStore();
    EXPECT_FALSE(copy.exists());
}

} // namespace
} // namespace quillabrae::store
