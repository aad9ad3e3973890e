// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/FontFamilyPicker.h"
#include "shell/editor/ToolOptionTable.h"
#include "shell/editor/ToolOptions.h"
#include "shell/looks/Symbols.h"
#include "store/StoreTest.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSlider>
#include <QTest>

namespace quillabrae::shell {
namespace {

using model::PaintTool;

class ToolOptionsTest : public store::StoreTest {
protected:
    ToolOptionsTest() { options.show(); }

    void choose(PaintTool tool) const {
        store->editSettings([tool](auto& settings) { settings.selectedTool = tool; });
    }
    /// The title of the group that is shown; empty for none.
    QString shownGroup() const {
        QStringList shown;
        for (const QWidget* child : options.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (!child->isHidden()) shown << child->accessibleName();
        }
        return shown.join(QLatin1Char('|'));
    }
    template <typename Control>
    Control* control(const char* title) const {
        for (Control* candidate : options.findChildren<Control*>()) {
            if (candidate->accessibleName() == QLatin1StringView(title)) return candidate;
        }
        return nullptr;
    }

    std::unique_ptr<store::ProjectStore> store = makeStore(store::Persistence::off);
    ToolOptions options{*store};
};

TEST_F(ToolOptionsTest, ShowTheGroupOfEachTool) {
    for (const PaintTool tool : model::allPaintTools()) {
        choose(tool);
        QString expected;
        if (tool == PaintTool::shapes)
            expected = QStringLiteral("Shape Options");
        else if (model::drawsContinuousStroke(tool) || model::drawsFromEndpoints(tool))
            expected = QStringLiteral("Brush Size");
        else if (tool == PaintTool::magicWand)
            expected = QStringLiteral("Magic Wand Match");
        else if (tool == PaintTool::paintBucket)
            expected = QStringLiteral("Paint Bucket Match");
        else if (tool == PaintTool::text)
            expected = QStringLiteral("Text Formatting");
        EXPECT_EQ(shownGroup(), expected) << qPrintable(model::title(tool));
    }
}

TEST_F(ToolOptionsTest, ShowTheHardnessWhereTheToolHeedsIt) {
    for (const PaintTool tool : model::allPaintTools()) {
        choose(tool);
        const auto* hardness = control<QSlider>("Hardness");
        const bool isShown = hardness != nullptr && hardness->isVisible();
        EXPECT_EQ(isShown, model::usesHardnessControl(tool)) << qPrintable(model::title(tool));
    }
}

TEST_F(ToolOptionsTest, WriteEverySliderToItsSetting) {
    for (const ToolOptionGroup& group : toolOptionGroups()) {
        for (const ToolOption& option : group.options) {
            const auto* row = std::get_if<SliderOption>(&option);
            if (row == nullptr) continue;
            for (const PaintTool tool : model::allPaintTools()) {
                if (!group.isShown(tool) || tool == PaintTool::shapes || !row->isHeeded(tool))
                    continue;
                choose(tool);
                auto* slider = control<QSlider>(row->text.title);
                ASSERT_NE(slider, nullptr) << row->text.title;
                EXPECT_EQ(slider->minimum(), row->minimum);
                EXPECT_EQ(slider->maximum(), row->maximum);
                EXPECT_EQ(slider->singleStep(), 1);
                EXPECT_EQ(slider->accessibleDescription(), QLatin1StringView(row->text.help));
                slider->setValue(slider->value() == 77 ? 78 : 77);
                EXPECT_EQ(store->settings().*row->field, slider->value());
            }
        }
    }
}

TEST_F(ToolOptionsTest, ShowValuesAsWholeNumbersAndLeaveThemUnrounded) {
    choose(PaintTool::paintbrush);
    store->editSettings([](auto& settings) { settings.brushSize = 7.6; });
    EXPECT_EQ(control<QSlider>("Brush Size")->value(), 8);
    EXPECT_EQ(store->settings().brushSize, 7.6);
}

TEST_F(ToolOptionsTest, OfferEveryShapeStyleAndWidth) {
    choose(PaintTool::shapes);
    auto* shape = control<QComboBox>("Shape");
    auto* style = control<QComboBox>("Shape Style");
    auto* width = control<QComboBox>("Outline Width");
    ASSERT_EQ(shape->count(), 8);
    ASSERT_EQ(style->count(), 3);
    EXPECT_EQ(width->count(),
              static_cast<int>(store::ProjectStore::availableShapeOutlineWidths().size()));
    EXPECT_TRUE(shape->accessibleDescription().contains(QStringLiteral("Shift")));
    EXPECT_EQ(style->accessibleDescription(),
              QStringLiteral("Uses the secondary color for fill and the primary color for the "
                             "outline."));
    EXPECT_EQ(width->accessibleDescription(),
              QStringLiteral("Sets the shape outline width in pixels."));
    shape->setCurrentIndex(5);
    Q_EMIT shape->activated(5);
    EXPECT_EQ(store->settings().selectedShape, model::CanvasShape::parallelogram);
    Q_EMIT style->activated(2);
    EXPECT_EQ(store->settings().shapeDrawingMode, model::ShapeDrawingMode::fillAndOutline);
    EXPECT_EQ(style->currentText(), QStringLiteral("Fill + Outline"));
    Q_EMIT width->activated(0);
    EXPECT_EQ(store->settings().shapeOutlineWidth, 1.0);
}

TEST_F(ToolOptionsTest, FormatText) {
    choose(PaintTool::text);
    control<QAbstractButton>("Bold")->click();
    control<QAbstractButton>("Strikethrough")->click();
    EXPECT_TRUE(store->settings().textBold);
    EXPECT_TRUE(store->settings().textStrikethrough);
    EXPECT_FALSE(store->settings().textItalic);
    control<QAbstractButton>("Bold")->click();
    EXPECT_FALSE(store->settings().textBold);
    Q_EMIT control<QComboBox>("Font Size")->activated(0);
    EXPECT_EQ(store->settings().textFontSize, 8.0);
}

TEST_F(ToolOptionsTest, AlignTextOneWayAtATime) {
    choose(PaintTool::text);
    const auto checked = [this] {
        QString ways;
        for (const char* way : {"Align Left", "Align Center", "Align Right"}) {
            ways +=
                control<QAbstractButton>(way)->isChecked() ? QLatin1Char('x') : QLatin1Char('.');
        }
        return ways;
    };
    EXPECT_EQ(checked(), QStringLiteral("x.."));
    control<QAbstractButton>("Align Center")->click();
    EXPECT_EQ(checked(), QStringLiteral(".x."));
    EXPECT_EQ(store->settings().textAlignment, model::CanvasTextAlignment::center);
    control<QAbstractButton>("Align Center")->click();
    EXPECT_EQ(checked(), QStringLiteral(".x."));
}

TEST_F(ToolOptionsTest, ShowAFontAndASizeThatAreNotInTheirMenus) {
    store->editSettings([](auto& settings) {
        settings.textFontFamily = QStringLiteral("No Such Family");
        settings.textFontSize = 20.5;
    });
    choose(PaintTool::text);
    EXPECT_EQ(control<QComboBox>("Font Size")->placeholderText(), QStringLiteral("20.5"));
    auto* picker = options.findChild<RefreshingFontFamilyPicker*>();
    EXPECT_EQ(picker->currentText(), QStringLiteral("No Such Family"));
    picker->showPopup();
    picker->hidePopup();
    EXPECT_EQ(picker->currentIndex(), -1);
    EXPECT_EQ(picker->placeholderText(), QStringLiteral("No Such Family"));
    EXPECT_EQ(store->settings().textFontFamily, QStringLiteral("No Such Family"));
}

TEST(FontFamilyPicker, AsksForFamiliesEachTimeItOpens) {
    QStringList families{QStringLiteral("A"), QStringLiteral("B")};
    RefreshingFontFamilyPicker picker([&] { return families; });
    picker.showFamily(QStringLiteral("B"));
    picker.showPopup();
    picker.hidePopup();
    EXPECT_EQ(picker.count(), 2);
    EXPECT_EQ(picker.currentText(), QStringLiteral("B"));
    families << QStringLiteral("C");
    picker.showPopup();
    picker.hidePopup();
    EXPECT_EQ(picker.count(), 3);
    EXPECT_EQ(picker.currentText(), QStringLiteral("B"));
}

TEST_F(ToolOptionsTest, HaveAKnownSymbolForEachItemAndButton) {
    for (const ToolOptionGroup& group : toolOptionGroups()) {
        for (const ToolOption& option : group.options) {
            if (const auto* menu = std::get_if<MenuOption>(&option)) {
                for (const MenuItem& item : menu->items()) {
                    EXPECT_TRUE(item.symbolName.isEmpty() || Symbols::isKnown(item.symbolName))
                        << qPrintable(item.symbolName);
                }
            }
            if (const auto* toggle = std::get_if<ToggleOption>(&option)) {
                EXPECT_TRUE(Symbols::isKnown(QString::fromLatin1(toggle->symbol)));
            }
        }
    }
}

} // namespace
} // namespace quillabrae::shell
