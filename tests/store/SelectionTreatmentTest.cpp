// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CommandTest.h"

namespace quillabrae::store {
namespace {

using model::CanvasAnchor;
using model::PixelSelection;

/// Which pixels a command changes.
enum class Region { selection, wholeLayer, everyLayer, twoLayers, none };
/// What a command leaves of a selection.
enum class SelectionLeft { kept, cleared, replaced };
/// What becomes of floating pixels.
enum class FloatingPixels { putDown, left };

struct SelectionTreatment {
    const char* name;
    void (*run)(ProjectStore& store);
    FloatingPixels floating;
    Region region;
    SelectionLeft left;
};

void PrintTo(const SelectionTreatment& treatment, std::ostream* stream) {
    *stream << treatment.name;
}

/// Three layers on 8 by 6 pixels: a blue dot at the bottom, an empty layer, and a red block on the
/// selected one. Green pixels float over the block's right edge.
class SelectionTreatments : public CommandTest,
                            public testing::WithParamInterface<SelectionTreatment> {
protected:
    SelectionTreatments() {
        store->editActiveProject(
            [](model::PaintProject& edited) { edited.layers[0].bitmapPNGData.reset(); });
        paint(0, QRect(0, 0, 1, 1), Qt::blue);
        store->addLayer();
        store->addLayer();
        paintRed(2, QRect(0, 0, 3, 3));
        QImage picture(2, 2, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        floatPicture(picture, outline);
        edit(*store, QStringLiteral("Paste"));
        before = project();
    }

    void paint(std::size_t index, const QRect& rect, Qt::GlobalColor color) {
        store->editActiveProject([&](model::PaintProject& edited) {
            model::PaintLayer& layer = edited.layers[index];
            raster::RasterImage image = picture(edited, index);
            raster::LayerRasterService::draw(
                image, [&](QPainter& painter) { painter.fillRect(rect, color); });
            layer.bitmapPNGData = raster::LayerRasterService::pngData(image);
        });
    }
    static raster::RasterImage picture(const model::PaintProject& of, std::size_t layer) {
        return raster::LayerRasterService::renderLayer(of.layers[layer], of.canvasWidth,
                                                       of.canvasHeight);
    }
    /// The bounds of the pixels of a layer that are not as they were.
    QRect changed(std::size_t layer) const {
        const QImage was = picture(before, layer).toQImage();
        const QImage is = picture(project(), layer).toQImage();
        QRect bounds;
        for (int y = 0; y < was.height(); ++y) {
            for (int x = 0; x < was.width(); ++x) {
                if (was.pixel(x, y) != is.pixel(x, y)) bounds |= QRect(x, y, 1, 1);
            }
        }
        return bounds;
    }
    void expectOnlyTheSelectedLayerChanged() const {
        EXPECT_TRUE(changed(0).isNull());
        EXPECT_TRUE(changed(1).isNull());
        EXPECT_FALSE(changed(2).isNull());
    }
    void expectRegion(Region region) const {
        switch (region) {
            case Region::selection:
                expectOnlyTheSelectedLayerChanged();
                EXPECT_TRUE(outlined.contains(changed(2)));
                break;
            case Region::wholeLayer:
                expectOnlyTheSelectedLayerChanged();
                EXPECT_FALSE(outlined.contains(changed(2)));
                break;
            case Region::everyLayer:
                ASSERT_EQ(project().layers.size(), 3U);
                for (std::size_t layer = 0; layer < 3; ++layer)
                    EXPECT_NE(project().layers[layer], before.layers[layer]) << layer;
                break;
            case Region::twoLayers:
                ASSERT_EQ(project().layers.size(), 2U);
                EXPECT_EQ(project().layers[0], before.layers[0]);
                break;
            case Region::none:
                EXPECT_EQ(project().layers, before.layers);
                break;
        }
    }
    void expectSelection(SelectionLeft left) const {
        const model::PaintProject& after = project();
        EXPECT_EQ(after.isCanvasSelected, left != SelectionLeft::cleared);
        if (left == SelectionLeft::kept) {
            EXPECT_EQ(after.floatingSelection, before.floatingSelection);
            EXPECT_EQ(after.pixelSelection, outline);
        } else if (left == SelectionLeft::cleared) {
            EXPECT_FALSE(after.pixelSelection);
            EXPECT_FALSE(after.floatingSelection);
        } else {
            EXPECT_EQ(after.pixelSelection, (PixelSelection{5, 4, 1, 1, std::nullopt}));
            ASSERT_TRUE(after.floatingSelection);
            EXPECT_EQ(after.floatingSelection->width, 1);
        }
    }
    /// Green, or what inverting makes of it.
    bool hasFloatingColor() const {
        for (std::size_t layer = 0; layer < project().layers.size(); ++layer) {
            const QImage is = picture(project(), layer).toQImage();
            for (int y = 0; y < is.height(); ++y) {
                for (int x = 0; x < is.width(); ++x) {
                    const QColor color = is.pixelColor(x, y);
                    if (color == QColor(Qt::green) || color == QColor(Qt::magenta)) return true;
                }
            }
        }
        return false;
    }

    PixelSelection outline{2, 1, 2, 2, std::nullopt};
    QRect outlined{2, 1, 2, 2};
    model::PaintProject before;
};

TEST_P(SelectionTreatments, EachCommandTreatsTheSelectionInItsWay) {
    const SelectionTreatment& treatment = GetParam();
    const qsizetype entries = titles(*store, id).size();
    treatment.run(*store);
    EXPECT_EQ(titles(*store, id).size(), entries + 1) << "one entry, none for the commit";
    EXPECT_EQ(hasFloatingColor(), treatment.floating == FloatingPixels::putDown);
    expectRegion(treatment.region);
    expectSelection(treatment.left);
    store->undo(id);
    EXPECT_EQ(project().layers, before.layers);
    EXPECT_EQ(project().floatingSelection, before.floatingSelection);
    EXPECT_EQ(project().pixelSelection, before.pixelSelection);
}

void paste(ProjectStore& store, PastedCanvas canvas) {
    const auto dot = raster::LayerRasterService::solidColorPNGData(1, 1, {0.0, 0.0, 0.0, 1.0});
    store.pasteImageIntoActiveProject({*dot, 1, 1, 5.0, 4.0}, canvas);
}

// clang-format off
const SelectionTreatment treatments[] = {
    {"invert", [](ProjectStore& store) { store.invertActiveImage(); },
     FloatingPixels::putDown, Region::selection, SelectionLeft::cleared},
    {"flip", [](ProjectStore& store) { store.flipSelectedLayer(FlipDirection::horizontal); },
     FloatingPixels::left, Region::selection, SelectionLeft::kept},
    {"rotate", [](ProjectStore& store) { store.rotateZoomSelectedLayer({90, 100}); },
     FloatingPixels::left, Region::selection, SelectionLeft::kept},
    {"align", [](ProjectStore& store) { store.applyAlignObject(AlignObjectAction::bottomRight, AdjustmentRun::recorded); },
     FloatingPixels::left, Region::selection, SelectionLeft::kept},
    {"remove colour", [](ProjectStore& store) { store.applyColorRemoval({1, 0, ColorRemovalPreset::red}, AdjustmentRun::recorded); },
     FloatingPixels::left, Region::wholeLayer, SelectionLeft::kept},
    {"resize image", [](ProjectStore& store) { store.resizeActiveImage({16, 12, 96, CanvasAnchor::center}); },
     FloatingPixels::left, Region::everyLayer, SelectionLeft::cleared},
    {"resize canvas", [](ProjectStore& store) { store.resizeActiveCanvas({16, 12, 96, CanvasAnchor::center}); },
     FloatingPixels::left, Region::everyLayer, SelectionLeft::cleared},
    {"trim", [](ProjectStore& store) { store.trimTransparentWhitespace(); },
     FloatingPixels::putDown, Region::everyLayer, SelectionLeft::cleared},
    {"flatten", [](ProjectStore& store) { store.flattenLayerDown(store.activeProject()->selectedLayerID); },
     FloatingPixels::putDown, Region::twoLayers, SelectionLeft::cleared},
    {"paste", [](ProjectStore& store) { paste(store, PastedCanvas::kept); },
     FloatingPixels::left, Region::none, SelectionLeft::replaced},
    {"paste that may expand", [](ProjectStore& store) { paste(store, PastedCanvas::expanded); },
     FloatingPixels::left, Region::none, SelectionLeft::replaced},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Commands, SelectionTreatments, testing::ValuesIn(treatments));

} // namespace
} // namespace quillabrae::store
