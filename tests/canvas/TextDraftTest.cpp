// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DraftHandles.h"
#include "canvas/SelectionGestureFixture.h"
#include "canvas/TextDraft.h"
#include "raster/LayerRasterServiceText.h"

#include <vector>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::CanvasTextAlignment;
using model::PaintTool;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr QSizeF canvas(200.0, 100.0);
constexpr model::ColorValue red{1.0, 0.0, 0.0, 1.0};

TEST(ClampedTextBoxSize, IsAtLeast48By32OrWhatIsLeft) {
    const std::vector<std::tuple<QSizeF, CanvasPoint, QSizeF>> rows{
        {{100, 50}, {0, 0}, {100, 50}},    {{10, 10}, {0, 0}, {48, 32}},
        {{300, 300}, {20, 30}, {180, 70}}, {{10, 10}, {180, 90}, {20, 10}},
        {{10, 10}, {200, 100}, {1, 1}},    {{60.4, 40.6}, {0, 0}, {60, 41}},
        {{-50, -50}, {0, 0}, {48, 32}},    {{160, 60}, {150, 70}, {50, 30}},
    };
    for (const auto& [size, point, expected] : rows)
        EXPECT_EQ(clampedTextBoxSize(size, point, canvas), expected)
            << size.width() << ' ' << point.x;
}

TEST(ClampedTextPoint, KeepsTheBoxOnTheCanvas) {
    EXPECT_EQ(clampedTextPoint({10.4, 20.6}, {50, 40}, canvas), (CanvasPoint{10, 21}));
    EXPECT_EQ(clampedTextPoint({-10, 500}, {50, 40}, canvas), (CanvasPoint{0, 60}));
    EXPECT_EQ(clampedTextPoint({500, -10}, {50, 40}, canvas), (CanvasPoint{150, 0}));
    EXPECT_EQ(clampedTextPoint({5, 5}, {300, 300}, canvas), (CanvasPoint{0, 0}));
}

TEST(TextHandles, AreTheEdgesTheCornerAndTheGrip) {
    const QRectF box(10, 20, 100, 60);
    struct Row {
        const char* name = "";
        QPointF place;
        QSizeF size;
        double minimumDistance = 0.0;
    };
    for (const Row& row :
         {Row{"horizontal", {110, 50}, {7, 22}, 1.0}, Row{"vertical", {60, 80}, {22, 7}, 1.0},
          Row{"both", {110, 80}, {10, 10}, 1.0}, Row{"move", {10, 20}, {10, 10}, 2.0}}) {
        const DraftHandle* handle =
            draftHandleNamed(DraftKind::text, QString::fromLatin1(row.name));
        ASSERT_NE(handle, nullptr) << row.name;
        EXPECT_EQ(handle->place(box), row.place) << row.name;
        EXPECT_EQ(handle->markSize, row.size) << row.name;
        EXPECT_EQ(handle->minimumDistance, row.minimumDistance) << row.name;
        EXPECT_EQ(draftHandleAt(DraftKind::text, row.place, box), handle) << row.name;
    }
}

class Text : public SelectionGestureFixture {
protected:
    Text() {
        host.tools.primaryColor = red;
        host.tools.textFontFamily = QStringLiteral("DejaVu Sans");
        host.tools.textFontSize = 10.0;
        useTool(PaintTool::text);
    }

    const std::optional<CanvasTextDraft>& draft() const {
        return view.textDraft().activeTextDraft();
    }
    void click(CanvasPoint at) { drag(at, at); }
    void type(const QString& text) {
        view.textDraft().edit(
            [&](TextEditing& editing, const raster::TextLayout&) { editing.insert(text); });
    }
    void change(const std::function<void(model::PaintAppSettings&)>& edit) {
        edit(host.tools);
        view.settingsChanged();
    }
    void dragHandle(const char* name, QPointF by) {
        const DraftHandle* handle = draftHandleNamed(DraftKind::text, QString::fromLatin1(name));
        const QPointF at = handle->place(view.textDraft().boxRect());
        drag({at.x(), at.y()}, {at.x() + by.x(), at.y() + by.y()});
    }
};

TEST_F(Text, AClickOpensABoxOnAWholePixel) {
    click({10.6, 20.4});
    ASSERT_TRUE(draft().has_value());
    EXPECT_EQ(draft()->point, (CanvasPoint{11, 20}));
    EXPECT_EQ(draft()->textBoxSize, QSizeF(160, 60));
    EXPECT_EQ(draft()->layerID, layer().id);
    EXPECT_EQ(draft()->color, red);
    EXPECT_TRUE(draft()->text.isEmpty());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Text, TheBoxGrowsWithTheFontAndShrinksToWhatIsLeft) {
    change([](auto& tools) { tools.textFontSize = 24.0; });
    click({0, 0});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(192, 72));
    click({195, 95});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(5, 5));
    view.handleKey(CanvasKey::escape);
    click({200, 100});
    EXPECT_EQ(draft()->point, (CanvasPoint{200, 100}));
    EXPECT_EQ(draft()->textBoxSize, QSizeF(1, 1));
}

TEST_F(Text, ACommitDrawsWhatThePreviewShows) {
    click({11, 20});
    type(QStringLiteral("Hello draft"));
    const raster::RasterImage preview = view.textDraft().preview();
    EXPECT_EQ(QSize(preview.width(), preview.height()), QSize(160, 60));
    EXPECT_FALSE(layer().bitmapPNGData.has_value());
    EXPECT_TRUE(view.handleKey(CanvasKey::escape));
    EXPECT_FALSE(draft().has_value());
    ASSERT_TRUE(layer().bitmapPNGData.has_value());
    auto expected = raster::LayerRasterService::transparentImage(200, 100);
    raster::LayerRasterService::drawImage(expected, preview, {11, 20, 160, 60});
    EXPECT_EQ(raster::decodedImage(*layer().bitmapPNGData), expected);
    EXPECT_THAT(host.history, ElementsAre(Pair("Text", "textformat")));
    EXPECT_EQ(project().lastModified, host.now());
}

TEST_F(Text, TheUntrimmedTextIsDrawn) {
    click({0, 0});
    type(QStringLiteral("   x\n"));
    view.handleKey(CanvasKey::escape);
    model::PaintLayer expected;
    raster::LayerRasterService::drawText(
        QStringLiteral("   x\n"), expected, 200, 100, {0, 0}, red,
        {.fontFamily = QStringLiteral("DejaVu Sans"), .fontSize = 10.0}, {160, 60});
    EXPECT_EQ(raster::decodedImage(*layer().bitmapPNGData),
              raster::decodedImage(*expected.bitmapPNGData));
}

TEST_F(Text, OfSpacesAloneIsDroppedWithoutATrace) {
    for (const QString& blank : {QString(), QStringLiteral("   "), QStringLiteral(" \n\t\n")}) {
        click({10, 10});
        type(blank);
        EXPECT_TRUE(view.handleKey(CanvasKey::escape));
        EXPECT_FALSE(draft().has_value());
        EXPECT_FALSE(layer().bitmapPNGData.has_value());
        EXPECT_THAT(host.history, IsEmpty());
    }
}

TEST_F(Text, EveryTriggerCommitsTheDraft) {
    const std::vector<std::pair<const char*, std::function<void()>>> triggers{
        {"escape", [this] { EXPECT_TRUE(view.handleKey(CanvasKey::escape)); }},
        {"shapes tool", [this] { useTool(PaintTool::shapes); }},
        {"bucket", [this] { useTool(PaintTool::paintBucket); }},
        {"brush", [this] { useTool(PaintTool::paintbrush); }},
        {"another click",
         [this] {
             click({10, 90});
         }},
        {"disappearing", [this] { view.disappear(); }},
    };
    for (const auto& [what, trigger] : triggers) {
        useTool(PaintTool::text);
        host.history.clear();
        layer().bitmapPNGData.reset();
        click({10, 10});
        const QUuid id = draft()->id;
        type(QStringLiteral("text"));
        trigger();
        EXPECT_TRUE(!draft() || draft()->id != id) << what;
        EXPECT_TRUE(layer().bitmapPNGData.has_value()) << what;
        EXPECT_THAT(host.history, ElementsAre(Pair("Text", "textformat"))) << what;
        view.disappear();
    }
}

TEST_F(Text, AHiddenLockedOrMissingLayerTakesNoText) {
    layer().isVisible = false;
    click({10, 10});
    EXPECT_FALSE(draft().has_value());
    layer().isVisible = true;
    click({10, 10});
    type(QStringLiteral("text"));
    layer().isLocked = true;
    view.handleKey(CanvasKey::escape);
    EXPECT_FALSE(draft().has_value());
    EXPECT_FALSE(layer().bitmapPNGData.has_value());
    layer().isLocked = false;
    click({10, 10});
    type(QStringLiteral("text"));
    layer().id = QUuid::createUuid();
    view.disappear();
    EXPECT_FALSE(draft().has_value());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Text, TheSettingsApplyToTheDraftAsTheyChange) {
    click({10, 10});
    type(QStringLiteral("styled"));
    const CanvasTextDraft before = *draft();
    const raster::RasterImage plain = view.textDraft().preview();
    change([](auto& tools) {
        tools.primaryColor = {0, 0, 1, 0.5};
        tools.textFontFamily = QStringLiteral("DejaVu Serif");
        tools.textFontSize = 17.0;
        tools.textAlignment = CanvasTextAlignment::right;
        tools.textBold = true;
        tools.textItalic = true;
        tools.textUnderline = true;
        tools.textStrikethrough = true;
    });
    EXPECT_EQ(draft()->color, (model::ColorValue{0, 0, 1, 0.5}));
    EXPECT_EQ(draft()->style, (raster::TextStyle{.fontFamily = QStringLiteral("DejaVu Serif"),
                                                 .isBold = true,
                                                 .isItalic = true,
                                                 .isUnderlined = true,
                                                 .isStruckThrough = true,
                                                 .alignment = CanvasTextAlignment::right,
                                                 .fontSize = 17.0}));
    EXPECT_EQ(draft()->point, before.point);
    EXPECT_EQ(draft()->text, before.text);
    EXPECT_EQ(draft()->textBoxSize, before.textBoxSize);
    EXPECT_NE(view.textDraft().preview(), plain);
}

TEST_F(Text, HandlesResizeTheBoxDownTo48By32) {
    click({20, 10});
    dragHandle("horizontal", {-10, 33});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(150, 60));
    dragHandle("vertical", {-50, 20});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(150, 80));
    dragHandle("both", {-20, -10});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(130, 70));
    dragHandle("both", {-500, -500});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(48, 32));
    dragHandle("both", {500, 500});
    EXPECT_EQ(draft()->textBoxSize, QSizeF(180, 90));
    EXPECT_EQ(draft()->point, (CanvasPoint{20, 10}));
}

TEST_F(Text, TheBoxStaysOnACanvasThatShrinks) {
    click({120, 30});
    ASSERT_EQ(draft()->textBoxSize, QSizeF(80, 60));
    type(QStringLiteral("abc"));
    const auto resizeCanvas = [&](double width, double height) {
        project().canvasWidth = width;
        project().canvasHeight = height;
        view.projectChanged();
    };
    resizeCanvas(150, 95);
    EXPECT_EQ(draft()->point, (CanvasPoint{70, 30}));
    EXPECT_EQ(draft()->textBoxSize, QSizeF(80, 60));
    resizeCanvas(50, 40);
    EXPECT_EQ(draft()->point, (CanvasPoint{0, 0}));
    EXPECT_EQ(draft()->textBoxSize, QSizeF(50, 40));
    EXPECT_EQ(draft()->text, QStringLiteral("abc"));
    // One that fits is left where it is.
    resizeCanvas(200, 100);
    EXPECT_EQ(draft()->point, (CanvasPoint{0, 0}));
    EXPECT_EQ(draft()->textBoxSize, QSizeF(50, 40));
}

TEST_F(Text, TheGripMovesTheBoxWithinTheCanvas) {
    click({20, 10});
    dragHandle("move", {7.4, 5.6});
    EXPECT_EQ(draft()->point, (CanvasPoint{27, 16}));
    dragHandle("move", {500, 500});
    EXPECT_EQ(draft()->point, (CanvasPoint{40, 40}));
    dragHandle("move", {-500, -500});
    EXPECT_EQ(draft()->point, (CanvasPoint{0, 0}));
    EXPECT_EQ(draft()->textBoxSize, QSizeF(160, 60));
}

TEST_F(Text, TheGripMovesOnlyOnceThePointerHasMovedTwoPoints) {
    click({20, 10});
    press({20, 10});
    moveTo({21, 11});
    EXPECT_EQ(draft()->point, (CanvasPoint{20, 10}));
    moveTo({22, 12});
    EXPECT_EQ(draft()->point, (CanvasPoint{22, 12}));
    release({22, 12});
}

TEST_F(Text, APressInTheBoxSetsTheCaretAndADragSelects) {
    click({20, 10});
    type(QStringLiteral("one two"));
    const QUuid id = draft()->id;
    const auto at = [&](int position) {
        const QPointF center = view.textDraft().layout().caretRect(position).center();
        return CanvasPoint{20 + center.x(), 10 + center.y()};
    };
    drag(at(1), at(3));
    EXPECT_EQ(draft()->id, id);
    EXPECT_EQ(view.textDraft().editing().selectedText(), QStringLiteral("ne"));
    click(at(5));
    EXPECT_EQ(view.textDraft().editing().selection(), (raster::TextRange{5, 5}));
    type(QStringLiteral("!"));
    EXPECT_EQ(draft()->text, QStringLiteral("one t!wo"));
}

TEST_F(Text, ADraftIsOutOfReachInAnotherProject) {
    click({20, 10});
    type(QStringLiteral("text"));
    const model::PaintProject first = project();
    layer() = emptyLayer();
    project().selectedLayerID = layer().id;
    view.activeProjectChanged();
    EXPECT_FALSE(view.drafts().hasText());
    EXPECT_FALSE(view.handleKey(CanvasKey::escape));
    host.active = first;
    view.activeProjectChanged();
    EXPECT_TRUE(view.handleKey(CanvasKey::escape));
    EXPECT_TRUE(layer().bitmapPNGData.has_value());
}

} // namespace
} // namespace quillabrae::canvas
