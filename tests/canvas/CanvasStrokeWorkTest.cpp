// SPDX-License-Identifier: GPL-3.0-or-later
// What a stroke on the widget costs, counted in work and not in time.
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "raster/CodecCounts.h"
#include "raster/DecodeCache.h"
#include "raster/PngCodec.h"
#include "store/StoreTest.h"

#include <QApplication>
#include <QFile>
#include <QMouseEvent>

namespace quillabrae::canvas {
namespace {

using raster::codecCounts;
using raster::CodecCounts;

constexpr int side = 1500;

class StrokeWork : public store::StoreTest {
protected:
    StrokeWork() {
        projects->createUntitledProject(side, side, 96);
        addPicture(0, 0x40);
        addPicture(1, 0x90);
        projects->editSettings([](model::PaintAppSettings& settings) {
            settings.selectedTool = model::PaintTool::pencil;
            settings.primaryColor = {1.0, 0.0, 0.0, 1.0};
            settings.brushSize = 20.0;
            settings.zoomScale = 1.0;
        });
        widget.resize(900, 700);
        widget.show();
        settle();
        widget.view().zoom().centerCanvasInViewport();
        settle();
    }

    /// Puts pixels into a layer, which is made where it is missing, and selects it.
    void addPicture(std::size_t index, std::uint8_t level) {
        raster::RasterImage image(side, side);
        for (std::uint8_t& byte : image.mutableBytes()) byte = level;
        projects->editActiveProject([&](model::PaintProject& project) {
            while (project.layers.size() <= index) {
                model::PaintLayer layer;
                layer.id = QUuid::createUuid();
                project.layers.push_back(layer);
            }
            project.layers[index].bitmapPNGData = raster::encodedImage(image);
            project.selectedLayerID = project.layers[index].id;
        });
    }

    static void settle() {
        QApplication::processEvents();
        QApplication::processEvents();
    }
    /// An event, and all that it sets off.
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button) {
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, widget.viewport()->mapToGlobal(at), button, held,
                          Qt::NoModifier);
        QApplication::sendEvent(widget.viewport(), &event);
        settle();
    }
    void press(QPointF at) { send(QEvent::MouseButtonPress, at, Qt::LeftButton); }
    void move(QPointF at) { send(QEvent::MouseMove, at, Qt::NoButton); }
    void release(QPointF at) { send(QEvent::MouseButtonRelease, at, Qt::LeftButton); }

    std::size_t historyLength() const {
        return projects->history(*projects->activeProjectID()).entries.size();
    }

    std::unique_ptr<store::ProjectStore> projects = makeStore();
    CanvasWidget widget{*projects};
};

TEST_F(StrokeWork, APressAndItsSamplesDecodeAndEncodeNothing) {
    const CodecCounts before = codecCounts();
    press({450.0, 350.0});
    for (int i = 1; i <= 20; ++i) move({450.0 + 5.0 * i, 350.0 + i % 3});
    EXPECT_EQ(codecCounts().decodedFiles, before.decodedFiles);
    EXPECT_EQ(codecCounts().encodedFiles, before.encodedFiles);
    EXPECT_EQ(codecCounts().compressedBands, before.compressedBands);
    release({550.0, 350.0});
}

TEST_F(StrokeWork, AReleaseEncodesTheBandsThatWereDrawnOnAndRecordsOneEntry) {
    // The layer's bands are those of a file of ours from the first stroke on.
    press({300.0, 200.0});
    release({300.0, 200.0});
    press({450.0, 350.0});
    move({550.0, 352.0});
    const model::PngBytes stored = *projects->activeProject()->layers[1].bitmapPNGData;
    const std::size_t entries = historyLength();
    ASSERT_TRUE(QFile::remove(recoveryFile()));
    const CodecCounts before = codecCounts();
    release({550.0, 352.0});
    const CodecCounts after = codecCounts();
    EXPECT_EQ(after.decodedFiles, before.decodedFiles);
    EXPECT_EQ(after.encodedFiles, before.encodedFiles + 1);
    // 22 rows or so out of 1500, which may lie on a border between bands.
    EXPECT_GE(after.compressedBands, before.compressedBands + 1);
    EXPECT_LE(after.compressedBands, before.compressedBands + 2);
    EXPECT_EQ(historyLength(), entries + 1);
    EXPECT_TRUE(QFile::exists(recoveryFile()));
    EXPECT_NE(*projects->activeProject()->layers[1].bitmapPNGData, stored);

    // The next press finds the pixels that were just stored.
    press({400.0, 300.0});
    EXPECT_EQ(codecCounts().decodedFiles, after.decodedFiles);
    release({400.0, 300.0});
}

TEST_F(StrokeWork, ALayerThatTheCacheHasForgottenIsDecodedOnce) {
    raster::clearDecodeCache();
    const CodecCounts before = codecCounts();
    press({450.0, 350.0});
    release({450.0, 350.0});
    // The two layers that show, and nothing twice.
    EXPECT_EQ(codecCounts().decodedFiles, before.decodedFiles + 2);
}

} // namespace
} // namespace quillabrae::canvas
