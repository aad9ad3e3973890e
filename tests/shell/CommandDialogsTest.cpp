// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs of the commands as a person works them: typed into, stepped, accepted and left.
#include "shell/controls/IconButton.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/SliderRow.h"
#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/AnchorPicker.h"
#include "shell/dialogs/ColorRemovalDialog.h"
#include "shell/dialogs/LayerPropertiesDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/dialogs/RotateZoomDialog.h"
#include "shell/editor/ColorSwatch.h"
#include "shell/looks/Symbols.h"
#include "store/StoreTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

using model::CanvasAnchor;
using store::AlignObjectAction;
using store::ColorRemovalPreset;
using store::ColorRemovalSettings;

/// The control with that accessible name.
template <typename Control>
Control* named(const QWidget& window, const QString& name) {
    const auto controls = window.findChildren<Control*>();
    const auto found = std::ranges::find_if(
        controls, [&](const Control* each) { return each->accessibleName() == name; });
    EXPECT_NE(found, controls.end()) << name.toStdString();
    return found == controls.end() ? nullptr : *found;
}

void type(const QWidget& window, const QString& name, const QString& text) {
    auto* field = named<NumberField>(window, name);
    field->selectAll();
    QTest::keyClicks(field, text);
}

void expectReturnAcceptsAndEscapeCancels(QDialog& dialog) {
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    dialog.show();
    dialog.setResult(QDialog::Accepted);
    dialog.close();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

QStringList texts(const QWidget& window) {
    QStringList all;
    for (const QLabel* label : window.findChildren<QLabel*>()) all << label->text();
    return all;
}

ResizeDialogRequest request(ResizeDialogMode mode = ResizeDialogMode::image) {
    return {mode, {300, 200}, 300, CanvasAnchor::left};
}

TEST(ResizeDialog, ShowsTheOldSizeAndTheNewOne) {
    const ResizeDialog dialog(request());
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Resize"));
    EXPECT_EQ(dialog.size(), QSize(520, 710));
    type(dialog, QStringLiteral("Percentage"), QStringLiteral("50"));
    EXPECT_TRUE(texts(dialog).contains(QStringLiteral("Old size: 300 x 200 px, 300 pixels/inch")));
    EXPECT_TRUE(texts(dialog).contains(QStringLiteral("New size: 150 x 100 px, 300 pixels/inch")));
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Width"))->value(), 150.0);
    EXPECT_FALSE(named<NumberField>(dialog, QStringLiteral("Width"))->isEnabled());
    EXPECT_EQ(dialog.answer().result,
              (store::ResizeDialogResult{150, 100, 300, CanvasAnchor::left}));
}

TEST(ResizeDialog, LinksItsFieldsBothWays) {
    const ResizeDialog dialog(request());
    dialog.findChildren<QRadioButton*>().at(1)->click();
    EXPECT_FALSE(named<NumberField>(dialog, QStringLiteral("Percentage"))->isEnabled());
    type(dialog, QStringLiteral("Width"), QStringLiteral("600"));
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Height"))->value(), 400.0);
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Print width"))->value(), 2.0);
    named<QComboBox>(dialog, QStringLiteral("Print unit"))->setCurrentIndex(1);
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Print width"))->value(), 5.08);
    dialog.findChild<QCheckBox*>()->click();
    type(dialog, QStringLiteral("Print height"), QStringLiteral("2.54"));
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Height"))->value(), 300.0);
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Width"))->value(), 600.0);
}

TEST(ResizeDialog, KeepsAResolutionThatItsUnitRounds) {
    const ResizeDialog dialog(request());
    named<QComboBox>(dialog, QStringLiteral("Resolution unit"))->setCurrentIndex(1);
    auto* resolution = named<NumberField>(dialog, QStringLiteral("Resolution"));
    EXPECT_EQ(resolution->text(), QStringLiteral("118.11"));
    EXPECT_EQ(dialog.answer().result.resolutionDPI, 300.0);
    type(dialog, QStringLiteral("Resolution"), QStringLiteral("100"));
    EXPECT_EQ(dialog.answer().result.resolutionDPI, 254.0);
}

TEST(ResizeDialog, ItsPickerChangesTheOperation) {
    ResizeDialog dialog(request());
    dialog.show();
    auto* picker = dialog.findChild<AnchorPicker*>();
    EXPECT_FALSE(picker->isVisible());
    dialog.findChild<QTabBar*>()->setCurrentIndex(1);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Canvas Size"));
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picker->anchor(), CanvasAnchor::left);
    picker->findChildren<IconButton*>().at(8)->click();
    EXPECT_EQ(dialog.answer(), (ResizeDialogResponse{ResizeDialogMode::canvas,
                                                     {300, 200, 300, CanvasAnchor::bottomRight}}));
    auto* names = picker->findChild<QComboBox*>();
    EXPECT_EQ(names->currentText(), QStringLiteral("Bottom Right"));
    names->setCurrentIndex(1);
    EXPECT_TRUE(picker->findChildren<IconButton*>().at(1)->isChecked());
    EXPECT_EQ(dialog.answer().result.anchor, CanvasAnchor::top);
    const ResizeDialog other(request(ResizeDialogMode::canvas));
    EXPECT_EQ(other.windowTitle(), QStringLiteral("Canvas Size"));
    EXPECT_EQ(other.answer().mode, ResizeDialogMode::canvas);
}

TEST(RotateZoomDialog, StartsAtRestAndStaysWithinItsRanges) {
    const RotateZoomDialog dialog;
    EXPECT_EQ(dialog.size(), QSize(420, 260));
    EXPECT_EQ(dialog.answer(), (store::RotateZoomDialogResult{0, 100}));
    EXPECT_EQ(named<QSlider>(dialog, QStringLiteral("Angle"))->value(), 180);
    EXPECT_EQ(named<QSlider>(dialog, QStringLiteral("Zoom"))->value(), 99);
    type(dialog, QStringLiteral("Angle"), QStringLiteral("-33.5"));
    EXPECT_EQ(dialog.answer().angleDegrees, -33.5);
    EXPECT_EQ(named<QSlider>(dialog, QStringLiteral("Zoom"))->maximum(), 399);
    named<QSlider>(dialog, QStringLiteral("Zoom"))->setValue(399);
    EXPECT_EQ(dialog.answer().zoomPercentage, 400.0);
    named<NumberField>(dialog, QStringLiteral("Angle"))->setValue(999);
    named<NumberField>(dialog, QStringLiteral("Zoom"))->setValue(0);
    EXPECT_EQ(dialog.answer(), (store::RotateZoomDialogResult{180, 1}));
}

TEST(LayerPropertiesDialog, ShowsOpacityInPercent) {
    const LayerPropertiesDialog dialog({QStringLiteral("Ink"), 0.25, false, true});
    EXPECT_EQ(dialog.size(), QSize(380, 295));
    EXPECT_EQ(named<NumberField>(dialog, QStringLiteral("Opacity"))->value(), 25.0);
    EXPECT_EQ(dialog.answer(),
              (store::LayerPropertiesDialogResult{QStringLiteral("Ink"), 0.25, false, true}));
    type(dialog, QStringLiteral("Opacity"), QStringLiteral("60"));
    auto* name = named<QLineEdit>(dialog, QStringLiteral("Layer name"));
    name->selectAll();
    QTest::keyClicks(name, QStringLiteral("Sky"));
    for (QCheckBox* box : dialog.findChildren<QCheckBox*>()) box->click();
    EXPECT_EQ(dialog.answer(),
              (store::LayerPropertiesDialogResult{QStringLiteral("Sky"), 0.6, true, false}));
}

TEST(AlignObjectDialog, ShowsEachChoiceAtOnce) {
    std::vector<AlignObjectAction> shown;
    const AlignObjectDialog dialog([&](AlignObjectAction action) { shown.push_back(action); });
    EXPECT_EQ(dialog.size(), QSize(390, 440));
    const auto buttons = dialog.findChildren<IconButton*>();
    ASSERT_EQ(buttons.size(), 15);
    std::vector<AlignObjectAction> expected;
    for (const AlignObjectAction action : store::allAlignObjectActions()) {
        EXPECT_TRUE(Symbols::isKnown(symbolName(action))) << symbolName(action).toStdString();
        named<IconButton>(dialog, title(action))->click();
        expected.push_back(action);
        EXPECT_EQ(shown, expected);
    }
    EXPECT_EQ(std::ranges::count_if(buttons, &IconButton::isChecked), 1);
}

class ColorRemovalDialogTest : public testing::Test {
protected:
    std::vector<ColorRemovalSettings> shown;
    ColorRemovalDialog dialog{{},
                              [this](const ColorRemovalSettings& each) { shown.push_back(each); }};
};

TEST_F(ColorRemovalDialogTest, StartsWithThePrimaryColorAndShowsEachChoice) {
    EXPECT_EQ(dialog.size(), QSize(520, 310));
    EXPECT_EQ(dialog.answer(), (ColorRemovalSettings{1, 0, ColorRemovalPreset::primary}));
    EXPECT_EQ(dialog.findChildren<ColorButton*>().size(), 12);
    named<ColorButton>(dialog, QStringLiteral("White"))->click();
    type(dialog, QStringLiteral("Color tolerance"), QStringLiteral("2"));
    named<QSlider>(dialog, QStringLiteral("Consider transparent any alpha smaller than"))
        ->triggerAction(QAbstractSlider::SliderToMaximum);
    EXPECT_EQ(shown, (std::vector<ColorRemovalSettings>{{1, 0, ColorRemovalPreset::white},
                                                        {2, 0, ColorRemovalPreset::white},
                                                        {2, 255, ColorRemovalPreset::white}}));
    EXPECT_EQ(dialog.answer(), shown.back());
}

TEST_F(ColorRemovalDialogTest, ASliderThatIsDraggedIsShownWhenItIsLetGo) {
    auto* slider = named<QSlider>(dialog, QStringLiteral("Color tolerance"));
    slider->setSliderDown(true);
    slider->setValue(20);
    slider->setValue(40);
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(dialog.answer().tolerancePercentage, 10.0);
    slider->setSliderDown(false);
    EXPECT_EQ(shown, (std::vector<ColorRemovalSettings>{{10, 0, ColorRemovalPreset::primary}}));
    slider->setSliderDown(true);
    slider->setSliderDown(false);
    EXPECT_EQ(shown.size(), 1U);
}

TEST(CommandDialogs, ReturnAppliesAndEscapeAndTheCloseButtonCancel) {
    ResizeDialog resize(request());
    expectReturnAcceptsAndEscapeCancels(resize);
    RotateZoomDialog rotate;
    expectReturnAcceptsAndEscapeCancels(rotate);
    LayerPropertiesDialog properties({QStringLiteral("Ink"), 1.0, true, false});
    expectReturnAcceptsAndEscapeCancels(properties);
    AlignObjectDialog align([](AlignObjectAction) {});
    expectReturnAcceptsAndEscapeCancels(align);
    ColorRemovalDialog removal({}, [](const ColorRemovalSettings&) {});
    expectReturnAcceptsAndEscapeCancels(removal);
}

TEST(CommandDialogs, EveryControlHasAName) {
    ResizeDialog resize(request());
    ColorRemovalDialog removal({}, [](const ColorRemovalSettings&) {});
    LayerPropertiesDialog properties({QStringLiteral("Ink"), 1.0, true, false});
    AlignObjectDialog align([](AlignObjectAction) {});
    RotateZoomDialog rotate;
    for (const QDialog* dialog :
         std::initializer_list<const QDialog*>{&resize, &removal, &properties, &align, &rotate}) {
        for (const QWidget* widget : dialog->findChildren<QWidget*>()) {
            // The line of a number field speaks through the field.
            const bool isPart = qobject_cast<const QAbstractSpinBox*>(widget->parent()) != nullptr;
            if (isPart || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            const bool hasText = button != nullptr && !button->text().isEmpty();
            EXPECT_TRUE(hasText || !widget->accessibleName().isEmpty())
                << widget->metaObject()->className();
        }
    }
}

} // namespace
} // namespace quillabrae::shell
