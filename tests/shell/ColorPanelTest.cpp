// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ColorStack.h"
#include "shell/editor/ColorSwatch.h"
#include "shell/panels/ColorComponents.h"
#include "shell/panels/ColorPanel.h"
#include "shell/panels/HueWheel.h"
#include "store/StoreTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

namespace quillabrae::shell {
namespace {

class ColorPanelTest : public store::StoreTest {
protected:
    ColorPanelTest() { panel.show(); }

    const model::ColorValue& primary() const { return store->settings().primaryColor; }
    void setPrimary(const model::ColorValue& color) const {
        store->editSettings([&](auto& settings) { settings.primaryColor = color; });
    }
    QSlider* slider(const char* title) const {
        for (QSlider* candidate : panel.findChildren<QSlider*>()) {
            if (candidate->accessibleName() == QLatin1StringView(title)) return candidate;
        }
        return nullptr;
    }
    QLineEdit* hex() const {
        for (QLineEdit* field : panel.findChildren<QLineEdit*>()) {
            if (field->accessibleName() == QStringLiteral("Hex")) return field;
        }
        return nullptr;
    }

    std::unique_ptr<store::ProjectStore> store = makeStore();
    ColorPanel panel{*store};
};

TEST_F(ColorPanelTest, SetsThePrimaryColorByACommonOne) {
    const auto buttons = panel.findChildren<ColorButton*>();
    ASSERT_EQ(buttons.size(), 18);
    for (qsizetype index = 0; index < buttons.size(); ++index) {
        EXPECT_EQ(buttons[index]->accessibleName(), QStringLiteral("Set primary color"));
        buttons[index]->click();
        EXPECT_EQ(primary(), commonColors().at(static_cast<std::size_t>(index)));
    }
}

TEST_F(ColorPanelTest, ShowsItsNumbersOnDemand) {
    EXPECT_FALSE(panel.isExpanded());
    const int narrow = panel.sizeHint().width();
    auto* more = panel.findChild<QPushButton*>();
    EXPECT_EQ(more->text(), QStringLiteral("More >>"));
    more->click();
    EXPECT_TRUE(panel.isExpanded());
    EXPECT_GT(panel.sizeHint().width(), narrow + 200);
    EXPECT_TRUE(slider("Red")->isVisible());
    more->click();
    EXPECT_FALSE(panel.isExpanded());
    EXPECT_EQ(panel.sizeHint().width(), narrow);
}

TEST_F(ColorPanelTest, WritesItsSlidersToThePrimaryColorAndKeepsTheSecondary) {
    const auto secondary = store->settings().secondaryColor;
    setPrimary({1.0, 0.0, 0.0, 1.0});
    EXPECT_EQ(slider("Red")->value(), 255);
    EXPECT_EQ(slider("Saturation")->value(), 100);
    slider("Green")->setValue(255);
    EXPECT_EQ(slider("Hue")->value(), 60);
    slider("Alpha")->setValue(51);
    EXPECT_DOUBLE_EQ(primary().alpha, 0.2);
    slider("Hue")->setValue(120);
    EXPECT_EQ(slider("Red")->value(), 0);
    EXPECT_EQ(slider("Green")->value(), 255);
    EXPECT_DOUBLE_EQ(primary().alpha, 0.2);
    EXPECT_EQ(store->settings().secondaryColor, secondary);
}

TEST_F(ColorPanelTest, ReadsZeroForBlackAndMakesAGrayByTheValueSlider) {
    setPrimary({0.0, 0.0, 0.0, 1.0});
    EXPECT_EQ(slider("Hue")->value(), 0);
    EXPECT_EQ(slider("Saturation")->value(), 0);
    slider("Value")->setValue(40);
    EXPECT_DOUBLE_EQ(primary().red, 0.4);
    EXPECT_EQ(primary().red, primary().blue);
}

TEST_F(ColorPanelTest, PicksOnTheWheelWithinAndBeyondTheRim) {
    setPrimary({1.0, 0.0, 0.0, 0.0});
    auto* wheel = panel.findChild<HueWheel*>();
    const QPoint center = wheel->rect().center();
    QTest::mousePress(wheel, Qt::LeftButton, {}, center + QPoint(20, 0));
    const double inside = toHueColor(primary()).saturation;
    EXPECT_GT(inside, 0.2);
    EXPECT_LT(inside, 0.8);
    QTest::mouseMove(wheel, center + QPoint(0, 400));
    EXPECT_NEAR(toHueColor(primary()).saturation, 1.0, 1e-9);
    EXPECT_NEAR(toHueColor(primary()).hue, 0.25, 0.01);
    EXPECT_EQ(primary().alpha, 0.0);
}

TEST_F(ColorPanelTest, TurnsTheWheelByKeyboard) {
    setPrimary({1.0, 0.0, 0.0, 1.0});
    auto* wheel = panel.findChild<HueWheel*>();
    QTest::keyClick(wheel, Qt::Key_Right);
    EXPECT_NEAR(toHueColor(primary()).hue, 1.0 / 120.0, 1e-9);
    QTest::keyClick(wheel, Qt::Key_Left);
    QTest::keyClick(wheel, Qt::Key_Down);
    EXPECT_NEAR(toHueColor(primary()).saturation, 0.98, 1e-9);
}

TEST_F(ColorPanelTest, TakesHexDigitsAndTurnsOthersAway) {
    hex()->setText(QStringLiteral("#336699"));
    QTest::keyClick(hex(), Qt::Key_Return);
    EXPECT_EQ(slider("Blue")->value(), 0x99);
    hex()->setText(QStringLiteral("nonsense"));
    QTest::keyClick(hex(), Qt::Key_Return);
    EXPECT_EQ(hex()->text(), QStringLiteral("#336699"));
    // Looking at a colour does not round it.
    setPrimary({0.1234, 0.5, 0.5, 1.0});
    QTest::keyClick(hex(), Qt::Key_Return);
    EXPECT_EQ(primary().red, 0.1234);
}

TEST_F(ColorPanelTest, TakesTypedNumbers) {
    for (QSpinBox* number : panel.findChildren<QSpinBox*>()) {
        if (number->accessibleName() == QStringLiteral("Blue value")) number->setValue(255);
    }
    EXPECT_EQ(primary().blue, 1.0);
    EXPECT_EQ(slider("Blue")->value(), 255);
}

TEST_F(ColorPanelTest, StoresWhatIsChosen) {
    panel.findChildren<ColorButton*>().at(3)->click();
    const auto chosen = primary();
    const auto next = makeStore();
    EXPECT_EQ(next->settings().primaryColor, chosen);
}

TEST_F(ColorPanelTest, DoesNothingWhenASwatchIsPressed) {
    const auto before = store->settings();
    for (ColorSwatch* swatch : panel.findChildren<ColorSwatch*>())
        QTest::mouseClick(swatch, Qt::LeftButton);
    EXPECT_EQ(store->settings(), before);
}

} // namespace
} // namespace quillabrae::shell
