// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/SVGImportService.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/DroppedContents.h"
#include "store/StoreTest.h"

#include <QBuffer>
#include <QFile>

namespace quillabrae::store {
namespace {

namespace MimeTypes = platform::MimeTypes;
using model::PaintTool;
using model::PastedImage;
using model::PixelSelection;

PastedImage image(double width, double height, std::optional<QPointF> origin = std::nullopt) {
    const auto bytes =
        raster::LayerRasterService::solidColorPNGData(width, height, {0.0, 1.0, 0.0, 1.0});
    PastedImage pasted{*bytes, width, height, std::nullopt, std::nullopt};
    if (origin) {
        pasted.sourceX = origin->x();
        pasted.sourceY = origin->y();
    }
    return pasted;
}

QByteArray pngFile(const QColor& color = Qt::red) {
    QImage picture(5, 4, QImage::Format_RGB32);
    picture.fill(color);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    picture.save(&file, "png");
    return file.data();
}

QImage pixels(const model::PaintLayer& layer) {
    return raster::decodedImage(*layer.bitmapPNGData).toQImage();
}

/// A store with one project of 8 by 6 pixels, and an SVG drawing that is always 30 by 20.
class ImageIntake : public StoreTest {
protected:
    ImageIntake() {
        svgImport = [this](const QByteArray& svg) -> std::optional<PastedImage> {
            drawings << svg;
            if (svg.contains("broken")) return std::nullopt;
            if (svg.contains("boundless")) throw persistence::SVGSizeRefused();
            return image(30, 20);
        };
        store = makeStore();
        id = makeProject(*store);
    }

    const model::PaintProject& project() const { return *store->activeProject(); }
    DroppedContents drop(const std::vector<platform::MemoryPasteboard::Item>& items) const {
        platform::MemoryPasteboard drag;
        drag.put(items);
        return droppedContents(drag);
    }
    DroppedContents dropFiles(const QList<QUrl>& files) const {
        QByteArray list;
        for (const QUrl& url : files) list += platform::uriListOf(url);
        return drop({{MimeTypes::uriList, list}, {MimeTypes::text, "where they are"}});
    }
    QUrl writeText(const QString& name, const QByteArray& text) const {
        QFile writing(folder.filePath(name));
        EXPECT_TRUE(writing.open(QIODevice::WriteOnly));
        writing.write(text);
        return file(name);
    }

    QList<QByteArray> drawings;
    std::unique_ptr<ProjectStore> store;
    QUuid id;
};

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

// Drops

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

// Files of copies

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
