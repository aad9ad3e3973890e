// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ContrastMeasure.h"
#include "shell/looks/Style.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillabrae::shell {
namespace {

class StyleTest : public testing::TestWithParam<std::tuple<ColorScheme, Contrast>> {
protected:
    QColor color(QPalette::ColorRole role) const { return palette.color(role); }
    /// The surfaces that texts stand on.
    QList<QColor> surfaces() const {
        const QColor window = color(QPalette::Window);
        const QColor raised = Style::raised(palette);
        return {window,
                raised,
                color(QPalette::Base),
                color(QPalette::AlternateBase),
                color(QPalette::ToolTipBase),
                over(Style::accentWash(palette), window),
                over(Style::accentWash(palette), raised),
                over(Style::hover(palette), window),
                over(Style::hover(palette), raised)};
    }

    ColorScheme scheme = std::get<ColorScheme>(GetParam());
    Contrast wanted = std::get<Contrast>(GetParam());
    QPalette palette = Style::palette(scheme, wanted);
    const double leastForText = leastTextContrast(wanted);
    const double leastForMarks = leastMarkContrast(wanted);
};

TEST_P(StyleTest, CanBeToldFromItsPalette) {
    EXPECT_EQ(Style::schemeOf(palette), scheme);
    EXPECT_EQ(Style::contrastOf(palette), wanted);
}

TEST_P(StyleTest, HasTextsThatStandOutFromEverySurface) {
    for (const QColor& surface : surfaces()) {
        EXPECT_GE(contrast(color(QPalette::WindowText), surface), leastForText)
            << qPrintable(surface.name());
        EXPECT_GE(contrast(over(Style::mutedText(palette), surface), surface), leastForText)
            << qPrintable(surface.name());
    }
    for (const QColor& surface : {color(QPalette::Window), Style::raised(palette)})
        EXPECT_GE(contrast(Style::failure(palette), surface), leastForText)
            << qPrintable(surface.name());
}

TEST_P(StyleTest, HasTextsThatStandOutFromTheirOwnSurface) {
    using enum QPalette::ColorRole;
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[]{
        {Text, Base},
        {PlaceholderText, Base},
        {PlaceholderText, Window},
        {ButtonText, Button},
        {ToolTipText, ToolTipBase},
        {HighlightedText, Highlight},
        {Link, Window},
        {Link, Base},
        {LinkVisited, Window},
    };
    for (const auto& [text, surface] : pairs)
        EXPECT_GE(contrast(color(text), color(surface)), leastForText) << text << " on " << surface;
}

TEST_P(StyleTest, HasAnAccentThatShowsOnEverySurface) {
    for (const QColor& surface : {color(QPalette::Window), Style::raised(palette)})
        EXPECT_GE(contrast(Style::accent(palette), surface), leastForMarks);
}

TEST_P(StyleTest, HasFieldsWhoseEdgesShow) {
    const QColor base = color(QPalette::Base);
    for (const QColor& surface : {color(QPalette::Window), Style::raised(palette)})
        EXPECT_GE(contrast(over(Style::outline(palette), base), surface), leastForMarks);
}

/// The row of pixels through the middle of a widget's face.
QList<QColor> middleRow(QWidget& widget) {
    const QImage picture = widget.grab().toImage();
    QList<QColor> row;
    for (int x = 0; x < picture.width(); ++x)
        row.append(picture.pixelColor(x, picture.height() / 2));
    return row;
}

TEST_P(StyleTest, PaintsTheEdgesOfFieldsAndBoxes) {
    const QPalette former = QApplication::palette();
    QApplication::setPalette(palette);
    QWidget window;
    QSpinBox number(&window);
    QLineEdit text(&window);
    QCheckBox box(&window);
    QRadioButton choice(&window);
    for (QWidget* field : std::initializer_list<QWidget*>{&number, &text, &box, &choice}) {
        field->resize(field->sizeHint());
        double best = 0.0;
        for (const QColor& pixel : middleRow(*field).first(4))
            best = std::max(best, contrast(pixel, color(QPalette::Window)));
        EXPECT_GE(best, leastForMarks) << field->metaObject()->className();
    }
    QApplication::setPalette(former);
}

TEST_P(StyleTest, PaintsButtonsThatTheirTitlesCanBeReadOn) {
    const QPalette former = QApplication::palette();
    QApplication::setPalette(palette);
    QWidget window;
    for (const bool isPrimary : {false, true}) {
        for (const bool isDown : {false, true}) {
            QPushButton button(QStringLiteral("Create"), &window);
            if (isPrimary) Style::markPrimary(button);
            button.setDown(isDown);
            button.resize(100, 36);
            const QImage picture = button.grab().toImage();
            const QColor title =
                color(isPrimary ? QPalette::HighlightedText : QPalette::ButtonText);
            // Along the left side of the face, where there is no letter.
            for (int y = 6; y < 30; ++y)
                EXPECT_GE(contrast(title, picture.pixelColor(8, y)), leastForText)
                    << isPrimary << isDown << ' ' << y;
        }
    }
    QApplication::setPalette(former);
}

/// What is chosen before the desktop turns dark is chosen after it.
TEST_P(StyleTest, KeepsThePrimaryButtonOutstandingWhenThePaletteChanges) {
    const QPalette former = QApplication::palette();
    QPushButton button(QStringLiteral("Create"));
    Style::markPrimary(button);
    button.resize(100, 36);
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
    EXPECT_EQ(button.grab().toImage().pixelColor(8, 18), Style::accent(palette));
    QApplication::setPalette(former);
}

TEST_P(StyleTest, PaintsAnEdgeAroundMenus) {
    const QPalette former = QApplication::palette();
    QApplication::setPalette(palette);
    QMenu menu;
    menu.addAction(QStringLiteral("Undo"));
    menu.addAction(QStringLiteral("Redo"));
    menu.resize(menu.sizeHint());
    const QImage picture = menu.grab().toImage();
    const QColor ground = Style::raised(palette);
    const int right = picture.width() - 1;
    const int bottom = picture.height() - 1;
    for (const QPoint at : {QPoint(0, bottom / 2), QPoint(right, bottom / 2), QPoint(right / 2, 0),
                            QPoint(right / 2, bottom)})
        EXPECT_GE(contrast(picture.pixelColor(at), ground), leastForMarks)
            << at.x() << ' ' << at.y();
    QApplication::setPalette(former);
}

TEST_P(StyleTest, HasPaperThatNeitherBlackNorWhiteStrokesAreLostOn) {
    const QColor paper = Style::paper(palette);
    EXPECT_GE(contrast(Qt::black, paper), 3.0);
    if (scheme == ColorScheme::light) return;
    EXPECT_GE(contrast(Qt::white, paper), 3.0);
}

TEST_P(StyleTest, GivesButtonsAndFieldsOneHeight) {
    QPushButton button(QStringLiteral("Save API Key"));
    QLineEdit text;
    QDoubleSpinBox number;
    QComboBox menu;
    menu.addItem(QStringLiteral("pixels/inch"));
    for (const QWidget* control : std::initializer_list<QWidget*>{&text, &number, &menu})
        EXPECT_EQ(control->sizeHint().height(), button.sizeHint().height())
            << control->metaObject()->className();
}

INSTANTIATE_TEST_SUITE_P(EachAppearance, StyleTest,
                         testing::Combine(testing::Values(ColorScheme::light, ColorScheme::dark),
                                          testing::Values(Contrast::normal, Contrast::high)));

} // namespace
} // namespace quillabrae::shell
